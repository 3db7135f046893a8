#include "gds/cell_references.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "base/row_bands.h"
#include "tests/gds/layout_file.h"

namespace zelmo {
namespace {

/// More than any stack could hold if every level took a call.
constexpr int depth = 200000;

/// A chain of cells "0", "1", ..., each with a reference to the next, one unit away.
GdsWriter Chain(bool deepestFirst, bool asArrays) {
    GdsWriter writer;
    writer.BeginLibrary();
    for (int k = 0; k < depth; ++k) {
        const int level = deepestFirst ? depth - 1 - k : k;
        writer.BeginCell(std::to_string(level));
        if (level == depth - 1) {
            writer.Rectangle(1, 0, 0, 10, 20);
        } else if (asArrays) {
            writer.Array(std::to_string(level + 1), 1, 1, {1, 0}, {2, 0}, {1, 1});
        } else {
            writer.Reference(std::to_string(level + 1), {1, 0});
        }
        writer.EndCell();
    }
    writer.EndLibrary();
    return writer;
}

void ExpectChainSizes(const LoadedLayout& loaded, bool deepestFirst) {
    ASSERT_EQ(loaded.result, 0);
    for (int k = 0; k < depth; ++k) {
        const int level = deepestFirst ? depth - 1 - k : k;
        ASSERT_EQ(loaded.database.cells[static_cast<std::size_t>(k)].bounds,
                  (GdsRect{0, 0, depth - 1 - level + 10, 20}));
    }
}

TEST(CellReferences, AChainOf200000CellsIsSizedFromItsTop) {
    ExpectChainSizes(Load(Chain(false, false)), false);
}

TEST(CellReferences, AChainOf200000CellsIsSizedFromItsEnd) {
    ExpectChainSizes(Load(Chain(true, false)), true);
}

TEST(CellReferences, AChainOf200000ArraysIsSizedFromItsTop) {
    ExpectChainSizes(Load(Chain(false, true)), false);
}

TEST(CellReferences, ACircleOf200000CellsIsRefused) {
    GdsWriter writer;
    writer.BeginLibrary();
    for (int k = 0; k < depth; ++k) {
        writer.BeginCell(std::to_string(k));
        writer.Reference(std::to_string((k + 1) % depth), {1, 0});
        writer.EndCell();
    }
    writer.EndLibrary();
    EXPECT_EQ(Load(writer).result, 30);
}

TEST(CellReferences, CellsThatShareCellsAreNoCircle) {
    GdsWriter writer;
    writer.BeginLibrary();
    writer.BeginCell("LEAF");
    writer.Rectangle(1, 0, 0, 1, 1);
    writer.EndCell();
    // Each level refers to the one below twice: 2^60 paths, but only 60 cells.
    std::string below = "LEAF";
    for (int level = 0; level < 60; ++level) {
        const std::string name = std::to_string(level);
        writer.BeginCell(name);
        writer.Reference(below, {0, 0});
        writer.Reference(below, {0, 1});
        writer.EndCell();
        below = name;
    }
    writer.EndLibrary();
    const LoadedLayout loaded = Load(writer);
    ASSERT_EQ(loaded.result, 0);
    EXPECT_EQ(loaded.database.cells.back().bounds, (GdsRect{0, 0, 1, 61}));
}

TEST(CellReferences, NamesAreComparedByteForByteUpToTheFirstNul) {
    const LoadedLayout loaded = LoadCell([](GdsWriter& writer) {
        writer.Reference("cell", {0, 0});
        writer.EndCell();
        for (const char* name : {"Cell", "cel", "cells", "cell"}) {
            writer.BeginCell(name);
            writer.EndCell();
        }
        writer.BeginCell("LAST");
    });
    ASSERT_EQ(loaded.result, 0);
    EXPECT_EQ(At(CellAt(loaded.database, 0).srefs, 0).cell, &CellAt(loaded.database, 4));
}

TEST(CellReferences, AnUnknownNameLeavesItsReferenceEmpty) {
    GdsDatabase database;
    AddCells(database, 1);
    database.cells[0].name = "CELL";
    Add(database.cells[0].srefs, {});
    database.cells[0].srefs[0].name = "OTHER";
    EXPECT_EQ(BindReferences(database), (ReferencePosition{0, false, 0}));
    EXPECT_EQ(database.cells[0].srefs[0].cell, nullptr);
    database.cells[0].srefs[0].name = std::string_view("CELL\0B", 6);
    EXPECT_EQ(BindReferences(database), std::nullopt);
    EXPECT_EQ(database.cells[0].srefs[0].cell, &database.cells[0]);
    EXPECT_EQ(FindReferenceCircle(database), (ReferencePosition{0, false, 0}));
}

TEST(CellReferences, ReferencesBehindTheFirstUnknownNameAreLeftAloneByAnyNumberOfThreads) {
    constexpr std::size_t count = 100000;
    GdsDatabase database;
    AddCells(database, 11);
    for (std::size_t i = 0; i < 10; ++i) {
        database.cells[i].name = i < 7 ? "CELL" : "TWIN";
    }
    std::vector<GdsSref> srefs(count);
    std::vector<GdsAref> arefs(count);
    for (std::size_t i = 0; i < count; ++i) {
        srefs[i].name = i % 2 == 0 ? "CELL" : "TWIN";
        arefs[i].name = i == 40000 || i == 90000 ? "UNKNOWN" : "TWIN";
    }
    database.cells[3].srefs = srefs;
    database.cells[5].arefs = arefs;
    database.cells[10].srefs = std::span(srefs).first(1);
    for (const std::int32_t threads : {1, 2, 3, 7}) {
        SetRowThreads(threads);
        EXPECT_EQ(BindReferences(database), (ReferencePosition{5, true, 40000})) << threads;
        for (std::size_t i = 0; i < count; ++i) {
            ASSERT_EQ(arefs[i].cell, i < 40000 ? &database.cells[7] : nullptr) << threads;
        }
        for (std::size_t i = 1; i < count; ++i) {
            ASSERT_EQ(srefs[i].cell, &database.cells[i % 2 == 0 ? 0 : 7]) << threads;
        }
        EXPECT_EQ(srefs[0].cell, nullptr);  // which is the last cell's, too
    }
    SetRowThreads(0);
}

TEST(CellReferences, AMillionReferencesToAHundredThousandCellsBindAtOnce) {
    // Every tenth cell repeats the name of the first of its ten. Compared with one cell after the
    // other, a name would cost as much as the whole binding may.
    constexpr std::size_t cellCount = 100000;
    GdsDatabase database;
    AddCells(database, cellCount);
    for (std::size_t i = 0; i < cellCount; ++i) {
        const std::size_t number = i % 10 == 9 ? i - 9 : i;
        database.cells[i].name = KeepName("a cell with a long name " + std::to_string(number));
    }
    std::vector<GdsSref> srefs;
    std::size_t target = 1;
    for (std::size_t i = 0; i < 1000000; ++i) {
        target = (target * 48271) % cellCount;
        GdsSref sref;
        sref.name = database.cells[target].name;
        srefs.push_back(sref);
    }
    database.cells[0].srefs = srefs;
    const auto start = std::chrono::steady_clock::now();
    ASSERT_EQ(BindReferences(database), std::nullopt);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
    target = 1;
    for (const GdsSref& sref : srefs) {
        target = (target * 48271) % cellCount;
        ASSERT_EQ(sref.cell, &database.cells[target % 10 == 9 ? target - 9 : target]);
    }
}

}  // namespace
}  // namespace zelmo
