#include "gds/layout_problems.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "gds/gds_database.h"
#include "tests/gds/layout_file.h"
#include "tests/gds/random_layout.h"

namespace zelmo {
namespace {

using Names = std::vector<std::string>;

void WriteCell(GdsWriter& writer, std::string_view name, const Names& references, bool drawn) {
    writer.BeginCell(name);
    for (const std::string& reference : references) {
        writer.Reference(reference, {0, 0});
    }
    if (drawn) {
        writer.Rectangle(1, 0, 0, 10, 10);
    }
    writer.EndCell();
}

LayoutProblems ProblemsOf(const GdsWriter& writer) {
    return FindLayoutProblems(Load(writer).database);
}

TEST(LayoutProblems, AreNoneInACleanLayout) {
    GdsWriter writer;
    writer.BeginLibrary();
    WriteCell(writer, "TOP", {"A", "A"}, true);
    WriteCell(writer, "A", {}, true);
    writer.EndLibrary();
    EXPECT_EQ(ProblemsOf(writer), LayoutProblems());
}

TEST(LayoutProblems, TellWhereAFileIsCutOff) {
    GdsWriter writer;
    writer.BeginLibrary();
    WriteCell(writer, "A", {}, true);
    LayoutProblems expected;
    expected.cutOff = true;
    expected.bytes = writer.Bytes().size();
    EXPECT_EQ(ProblemsOf(writer), expected);

    writer.BeginCell("OPEN");
    writer.Rectangle(1, 0, 0, 10, 10);
    expected.bytes = writer.Bytes().size();
    expected.cutCell = "OPEN";
    EXPECT_EQ(ProblemsOf(writer), expected);

    writer.Bytes().pop_back();
    --expected.bytes;
    EXPECT_EQ(ProblemsOf(writer), expected);
}

TEST(LayoutProblems, TellThatNothingIsThere) {
    GdsWriter writer;
    EXPECT_TRUE(ProblemsOf(writer).noCells);
    EXPECT_TRUE(ProblemsOf(writer).cutOff);
    writer.BeginLibrary();
    WriteCell(writer, "A", {}, false);
    WriteCell(writer, "TOP", {"A"}, false);
    writer.EndLibrary();
    const LayoutProblems problems = ProblemsOf(writer);
    EXPECT_FALSE(problems.noCells);
    EXPECT_TRUE(problems.nothingDrawn);
    EXPECT_EQ(problems.empty, Names{"A"});
}

TEST(LayoutProblems, TellCellsThatAreThereTwice) {
    GdsWriter writer;
    writer.BeginLibrary();
    for (const char* name : {"B", "A", "B", "C", "A", "B"}) {
        WriteCell(writer, name, {}, true);
    }
    writer.EndLibrary();
    EXPECT_EQ(ProblemsOf(writer).repeated, (std::vector<RepeatedCell>{{"B", 3}, {"A", 2}}));
}

TEST(LayoutProblems, TellCellsThatAreMissing) {
    GdsWriter writer;
    writer.BeginLibrary();
    WriteCell(writer, "A", {"B", "NONE", "NONE"}, true);
    WriteCell(writer, "B", {"OTHER", "NONE"}, true);
    writer.EndLibrary();
    const LoadedLayout loaded = Load(writer);
    ASSERT_EQ(loaded.error->kind, LayoutErrorKind::CellMissing);
    EXPECT_EQ(FindLayoutProblems(loaded.database).missing,
              (std::vector<MissingCell>{{"NONE", 3, "A"}, {"OTHER", 1, "B"}}));
}

TEST(LayoutProblems, TellAllCellsThatContainThemselves) {
    GdsWriter writer;
    writer.BeginLibrary();
    WriteCell(writer, "TOP", {"A", "S", "X"}, true);
    WriteCell(writer, "A", {"B", "X"}, true);
    WriteCell(writer, "B", {"C", "X"}, true);
    WriteCell(writer, "C", {"B", "A"}, true);
    WriteCell(writer, "S", {"X", "S"}, true);
    WriteCell(writer, "X", {"Y"}, true);
    WriteCell(writer, "Y", {}, true);
    writer.EndLibrary();
    const LoadedLayout loaded = Load(writer);
    ASSERT_EQ(loaded.error->kind, LayoutErrorKind::CellInItself);
    EXPECT_EQ(FindLayoutProblems(loaded.database).inThemselves, (Names{"A", "B", "C", "S"}));
}

/// Whether a cell is reached from itself, plainly.
bool ContainsItself(const GdsDatabase& database, const GdsCell& start) {
    std::vector<const GdsCell*> reached;
    std::vector<const GdsCell*> next{&start};
    while (!next.empty()) {
        const GdsCell* const cell = next.back();
        next.pop_back();
        for (const GdsSref& sref : cell->srefs) {
            if (sref.cell == &start) {
                return true;
            }
            if (std::find(reached.begin(), reached.end(), sref.cell) == reached.end()) {
                reached.push_back(sref.cell);
                next.push_back(sref.cell);
            }
        }
    }
    return database.cells.empty();
}

TEST(LayoutProblems, TellAllCirclesOfRandomReferences) {
    std::mt19937 random(8);
    std::size_t circles = 0;
    for (int round = 0; round < 300; ++round) {
        const std::size_t count = 1 + random() % 12;
        GdsDatabase database;
        AddCells(database, count);
        for (std::size_t i = 0; i < count; ++i) {
            CellAt(database, i).name = KeepName("CELL" + std::to_string(i));
        }
        for (std::size_t i = 0; i < 1 + random() % (2 * count); ++i) {
            GdsSref sref;
            sref.cell = &CellAt(database, random() % count);
            sref.name = sref.cell->name;
            Add(CellAt(database, random() % count).srefs, sref);
        }
        Names expected;
        for (const GdsCell& cell : database.cells) {
            if (ContainsItself(database, cell)) {
                expected.emplace_back(cell.name);
            }
        }
        circles += expected.size();
        ASSERT_EQ(FindLayoutProblems(database).inThemselves, expected) << round;
    }
    EXPECT_GT(circles, 100u);
}

TEST(LayoutProblems, AreFoundHoweverDeepCellsAreNested) {
    GdsDatabase database;
    constexpr std::size_t depth = 200000;
    AddCells(database, depth);
    for (std::size_t i = 0; i < depth; ++i) {
        GdsCell& cell = CellAt(database, i);
        cell.name = KeepName(std::to_string(i));
        GdsSref sref;
        sref.cell = &CellAt(database, (i + 1) % depth);
        Add(cell.srefs, sref);
    }
    EXPECT_EQ(FindLayoutProblems(database).inThemselves.size(), depth);
}

}  // namespace
}  // namespace zelmo
