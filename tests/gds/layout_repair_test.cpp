#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "gds/layout_repairs.h"
#include "tests/gds/database_text.h"
#include "tests/gds/layout_file.h"
#include "tests/gds/random_layout.h"
#include "tests/gds/reading_in_pieces.h"

// Layouts that are refused, read as what they mean.

namespace zelmo {
namespace {

using Bytes = std::vector<std::uint8_t>;
using Points = std::vector<GdsPoint>;

LoadedLayout LoadRepaired(const Bytes& bytes) {
    return LoadBytes(bytes, {.repair = true});
}

/// A library with the one cell "TOP", whose elements `write` adds, as it is repaired. It is refused
/// with a code otherwise.
template <typename Write>
LoadedLayout RepairCell(std::int32_t code, Write write) {
    const Bytes bytes = LibraryWithCell(write).Bytes();
    EXPECT_EQ(LoadBytes(bytes).result, code);
    return LoadRepaired(bytes);
}

TEST(LayoutRepair, ReadsAPathWithRepeatedPoints) {
    const LoadedLayout loaded = RepairCell(3, [](GdsWriter& writer) {
        writer.Path(5, {{0, 0}, {0, 0}, {100, 0}}, 10);
        writer.Rectangle(6, 0, 0, 10, 10);
    });
    EXPECT_EQ(loaded.result, 0);
    EXPECT_EQ(loaded.database.repairs,
              (LayoutRepairs{.repeatedPoints = 1, .firstMissingCell = ""}));
    const GdsCell& top = CellAt(loaded.database, 0);
    ASSERT_EQ(top.boundaries.size(), 2u);
    EXPECT_EQ(top.boundaries[0].layer, 5);
    EXPECT_EQ(PointsOf(top.boundaries[0]), (Points{{0, 5}, {100, 5}, {100, -5}, {0, -5}, {0, 5}}));
    EXPECT_EQ(top.boundaries[0].bounds, (GdsRect{0, -5, 100, 5}));
    EXPECT_EQ(top.boundaries[1].layer, 6);
}

TEST(LayoutRepair, APathThatFoldsBackIsTwoPolygonsOfItsLayer) {
    const LoadedLayout loaded = RepairCell(3, [](GdsWriter& writer) {
        writer.Path(5, {{0, 0}, {100, 0}, {40, 0}}, 10);
    });
    ASSERT_EQ(CellAt(loaded.database, 0).boundaries.size(), 2u);
    EXPECT_EQ(CellAt(loaded.database, 0).boundaries[1].layer, 5);
    EXPECT_EQ(loaded.database.repairs,
              (LayoutRepairs{.collinearPoints = 1, .firstMissingCell = ""}));
}

TEST(LayoutRepair, CountsEachKind) {
    const LoadedLayout loaded = RepairCell(3, [](GdsWriter& writer) {
        writer.Path(1, {{0, 0}, {0, 0}, {50, 0}, {100, 0}}, 10);
        writer.Path(1, {{0, 0}, {50, 0}, {100, 0}}, 10);
        writer.Path(1, {{7, 1}, {7, 7}}, 10, 2);
        writer.Path(1, {{7, 1}}, 10, 2);
        writer.Path(1, {{7, 1}, {8, 1}}, 10, 2);  // is taken as it is
        writer.Reference("NOWHERE", {0, 0});
        writer.Array("NOWHERE ELSE", 1, 1, {0, 0}, {1, 0}, {0, 1});
    });
    EXPECT_EQ(loaded.result, 0);
    EXPECT_EQ(loaded.database.repairs, (LayoutRepairs{.repeatedPoints = 1,
                                                      .collinearPoints = 2,
                                                      .refusedEnds = 1,
                                                      .noLength = 1,
                                                      .missingCells = 2,
                                                      .firstMissingCell = "NOWHERE"}));
    EXPECT_EQ(CellAt(loaded.database, 0).boundaries.size(), 5u);
}

TEST(LayoutRepair, TellsALineForEachKindThatOccurred) {
    EXPECT_EQ(RepairLines({}), std::vector<std::string>());
    EXPECT_EQ(RepairLines({.repeatedPoints = 29, .missingCells = 1, .firstMissingCell = "A"}),
              (std::vector<std::string>{
                  "29 paths with repeated points, each of which counts once",
                  "1 reference to cells that are not in the file, which are skipped (the first is "
                  "\"A\")"}));
    EXPECT_EQ(RepairLines({1, 1, 1, 1, 1, "A"}).size(), 5u);
}

TEST(LayoutRepair, SkipsOnlyTheReferencesToMissingCells) {
    GdsWriter writer;
    writer.BeginCell("TOP");
    for (const char* name : {"A", "PART", "B", "", "PART", "A"}) {
        writer.Reference(name, {static_cast<std::int64_t>(writer.Bytes().size()), 0});
        writer.Array(name, 2, 2, {0, 0}, {20, 0}, {0, 20});
    }
    writer.Record(record::sref);  // without a name
    writer.Record(record::endel);
    writer.EndCell();
    writer.BeginCell("PART");
    writer.Rectangle(1, 0, 0, 5, 5);
    writer.EndCell();
    EXPECT_EQ(LoadBytes(writer.Bytes()).result, 29);
    const LoadedLayout loaded = LoadRepaired(writer.Bytes());
    EXPECT_EQ(loaded.result, 0);
    EXPECT_EQ(loaded.database.repairs.missingCells, 9u);
    EXPECT_EQ(loaded.database.repairs.firstMissingCell, "A");
    const GdsCell& top = CellAt(loaded.database, 0);
    ASSERT_EQ(top.srefs.size(), 2u);
    ASSERT_EQ(top.arefs.size(), 2u);
    EXPECT_LT(top.srefs[0].origin.x, top.srefs[1].origin.x);
    for (const GdsSref& sref : top.srefs) {
        EXPECT_EQ(sref.cell, &CellAt(loaded.database, 1));
    }
    for (const GdsAref& aref : top.arefs) {
        EXPECT_EQ(aref.cell, &CellAt(loaded.database, 1));
    }
}

TEST(LayoutRepair, RoundAndVariableEndsAreThoseThatTheFileStates) {
    const LoadedLayout loaded = RepairCell(3, [](GdsWriter& writer) {
        for (int i = 0; i < 2; ++i) {  // whether or not it is the first of its type
            writer.Path(1, {{0, 0}, {0, 0}, {1000, 0}}, 200, 1);
            writer.Record(record::path);
            writer.RecordU16(record::layer, {1});
            writer.RecordU16(record::pathtype, {4});
            writer.RecordI32(record::width, {10});
            writer.RecordI32(record::bgnextn, {20});
            writer.RecordI32(record::endextn, {-30});
            writer.RecordI32(record::xy, {0, 0, 0, 0, 100, 0});
            writer.Record(record::endel);
        }
        writer.Path(1, {{0, 0}, {0, 0}, {100, 0}}, 10, 4);  // with no extension of its own
    });
    const GdsCell& top = CellAt(loaded.database, 0);
    ASSERT_EQ(top.boundaries.size(), 5u);
    for (const std::size_t i : {0, 2}) {
        EXPECT_EQ(top.boundaries[i].bounds, (GdsRect{-100, -100, 1100, 100}));
        EXPECT_EQ(PointsOf(top.boundaries[i + 1]),
                  (Points{{-20, 5}, {70, 5}, {70, -5}, {-20, -5}, {-20, 5}}));
    }
    EXPECT_EQ(top.boundaries[4].bounds, (GdsRect{0, -5, 100, 5}));
}

TEST(LayoutRepair, ExtensionsOfAPathThatIsTakenChangeNothing) {
    const auto write = [](bool extended) {
        GdsWriter writer;
        writer.BeginCell("TOP");
        for (const std::uint16_t type : {4, 4, 0}) {
            writer.Record(record::path);
            writer.RecordU16(record::layer, {1});
            writer.RecordU16(record::pathtype, {type});
            writer.RecordI32(record::width, {10});
            if (extended) {
                writer.RecordI32(record::bgnextn, {20});
                writer.Record(record::endextn);
            }
            writer.RecordI32(record::xy, {0, 0, 100, 0});
            writer.Record(record::endel);
        }
        writer.EndCell();
        LoadedLayout loaded = LoadBytes(writer.Bytes());
        loaded.database.end.bytes = 0;  // the files are not of one length
        return TextOf(loaded.database);
    };
    EXPECT_EQ(write(true), write(false));
}

TEST(LayoutRepair, WhatElseIsRefusedStaysRefused) {
    GdsWriter circle;
    circle.BeginCell("A");
    circle.Path(1, {{0, 0}, {0, 0}}, 10);
    circle.Reference("A", {0, 0});
    circle.Reference("NOWHERE", {0, 0});
    circle.EndCell();
    EXPECT_EQ(LoadRepaired(circle.Bytes()).result, 30);
    GdsWriter stray;
    stray.BeginCell("A");
    stray.Path(1, {{0, 0}, {0, 0}}, 10);
    stray.RecordU16(record::layer, {1});
    EXPECT_EQ(LoadRepaired(stray.Bytes()).result, 25);
    GdsWriter noLayer;
    noLayer.BeginCell("A");
    noLayer.Record(record::path);
    noLayer.RecordI32(record::xy, {0, 0, 0, 0});
    noLayer.Record(record::endel);
    EXPECT_EQ(LoadRepaired(noLayer.Bytes()).result, 28);
    GdsWriter noPoints;
    noPoints.BeginCell("A");
    noPoints.Path(1, {}, 10);
    EXPECT_THROW(LoadRepaired(noPoints.Bytes()), std::out_of_range);
}

/// All that reading gives, in words.
std::string TextOf(const LoadedLayout& loaded) {
    std::string text = std::to_string(loaded.result) + " " + TextOf(loaded.database);
    for (const std::string& line : loaded.lines) {
        text += "\n" + line;
    }
    return text;
}

TEST(LayoutRepair, ALayoutThatIsTakenGivesTheSame) {
    std::mt19937 random(83);
    int taken = 0;
    for (int run = 0; run < 300; ++run) {
        GdsWriter writer;
        writer.BeginLibrary();
        for (int cell = 0; cell < 4; ++cell) {
            writer.BeginCell("CELL" + std::to_string(cell));
            for (int i = 0; i < 3; ++i) {
                const auto number = [&] { return static_cast<std::int64_t>(random() % 12); };
                const auto type = static_cast<std::uint16_t>(random() % 5);
                writer.Path(1, {{number(), number()}, {number(), number()}},
                            static_cast<std::int32_t>(random() % 9), type);
                writer.Rectangle(2, 0, 0, static_cast<std::int32_t>(random() % 9), 5);
            }
            if (cell > 0) {
                writer.Reference("CELL" + std::to_string(random() % 4 == 0 ? 9 : cell - 1), {1, 2});
            }
            writer.EndCell();
        }
        writer.EndLibrary();
        const LoadedLayout plain = LoadBytes(writer.Bytes());
        const LoadedLayout repaired = LoadRepaired(writer.Bytes());
        EXPECT_EQ(repaired.result, 0);
        if (plain.result == 0) {
            ++taken;
            EXPECT_EQ(TextOf(repaired), TextOf(plain));
            EXPECT_EQ(repaired.database.repairs, LayoutRepairs());
        } else {
            EXPECT_NE(repaired.database.repairs, LayoutRepairs());
        }
    }
    EXPECT_GT(taken, 20);
    EXPECT_LT(taken, 200);
}

/// The same by several threads and in pieces.
class LayoutRepairInPiecesTest : public ReadingInPiecesTest {
protected:
    LayoutRepairInPiecesTest() : ReadingInPiecesTest({.repair = true}) {}
};

TEST_F(LayoutRepairInPiecesTest, GivesAndCountsTheSame) {
    std::mt19937 random(84);
    GdsWriter writer;
    writer.BeginLibrary();
    for (int cell = 0; cell < 60; ++cell) {
        writer.BeginCell("CELL" + std::to_string(cell));
        for (int i = 0; i < 20; ++i) {
            Points points;
            for (std::uint32_t n = 1 + random() % 4; n > 0; --n) {
                points.push_back({static_cast<std::int64_t>(random() % 3),
                                  static_cast<std::int64_t>(random() % 3)});
            }
            writer.Path(1, points, 10, static_cast<std::uint16_t>(random() % 3));
        }
        writer.EndCell();
    }
    const ReadingOutcome outcome = ExpectTheSame(writer.Bytes());
    EXPECT_GT(outcome.repairs.repeatedPoints, 0u);
    EXPECT_GT(outcome.repairs.noLength, 0u);
}

TEST_F(LayoutRepairInPiecesTest, CountsOnceWhatIsReadAgain) {
    GdsWriter writer;
    writer.BeginCell("A");
    writer.Record(record::text);
    writer.EndCell();  // the text stays open, against what the next piece supposes
    writer.BeginCell("B");
    writer.Record(record::endel);
    for (int i = 0; i < 50; ++i) {
        writer.Path(1, {{0, 0}, {0, 0}, {100, 0}}, 10);
    }
    writer.EndCell();
    EXPECT_EQ(ExpectTheSame(writer.Bytes()).repairs.repeatedPoints, 50u);
}

}  // namespace
}  // namespace zelmo
