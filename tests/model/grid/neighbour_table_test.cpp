#include "model/grid/neighbour_table.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <vector>

#include "base/conversions.h"
#include "tests/model/grid_model.h"
#include "tests/plain/neighbour_table_plain.h"
#include "tests/support/case_count.h"
#include "tests/support/strange_numbers.h"

namespace zelmo {
namespace {

NeighbourTable MakeTable(std::int32_t rows, std::int32_t cols, float spacing) {
    NeighbourTable table;
    BuildNeighbourTable(table, rows, cols, spacing);
    return table;
}

/// Mostly ordinary ones; of the others some make many lengths round to one distance.
float RandomSpacing(TestRandom& random) {
    constexpr float odd[] = {1e-45f, 7e-44f, 1.2e-38f, 1e-20f, 1e20f, 1e37f, 2e38f};
    return random.Below(4) == 0 ? odd[random.Below(7)] : 0.001f + random.Unit();
}

std::uint64_t HashOf(const NeighbourTable& table) {
    WordHash hash;
    for (const NeighbourOffset& entry : table.entries) {
        hash.Take(entry.dx);
        hash.Take(entry.dy);
        hash.Take(entry.distance);
    }
    return hash.Value();
}

void ExpectSameTables(const NeighbourTable& table, const NeighbourTable& plain) {
    ASSERT_EQ(table.count, plain.count);
    ASSERT_EQ(table.entries.size(), plain.entries.size());
    for (std::size_t i = 0; i < plain.entries.size(); ++i) {
        ASSERT_EQ(table.entries[i].dx, plain.entries[i].dx) << i;
        ASSERT_EQ(table.entries[i].dy, plain.entries[i].dy) << i;
        ASSERT_EQ(table.entries[i].distance, plain.entries[i].distance) << i;
    }
}

TEST(NeighbourTable, HoldsEveryOffsetOfTheGridOnce) {
    const NeighbourTable table = MakeTable(3, 5, 0.25f);
    EXPECT_EQ(table.count, 5 * 9);
    std::vector<int> seen(5 * 9, 0);
    for (const NeighbourOffset& entry : table.entries) {
        ASSERT_LE(std::abs(entry.dx), 4);
        ASSERT_LE(std::abs(entry.dy), 2);
        ++seen[static_cast<std::size_t>((entry.dy + 2) * 9 + entry.dx + 4)];
    }
    EXPECT_EQ(seen, std::vector<int>(5 * 9, 1));
}

TEST(NeighbourTable, BeginsWithTheCellItself) {
    const NeighbourTable table = MakeTable(4, 4, 0.5f);
    EXPECT_EQ(table.entries[0].dx, 0);
    EXPECT_EQ(table.entries[0].dy, 0);
    EXPECT_EQ(table.entries[0].distance, 0.0f);
}

TEST(NeighbourTable, EqualDistancesStandInOrderOfDyThenDx) {
    const NeighbourTable table = MakeTable(4, 4, 0.5f);
    const GridOffset expected[] = {{0, 0},   {0, -1}, {-1, 0}, {1, 0}, {0, 1},
                                   {-1, -1}, {1, -1}, {-1, 1}, {1, 1}};
    for (std::size_t i = 0; i < std::size(expected); ++i) {
        EXPECT_EQ((GridOffset{table.entries[i].dx, table.entries[i].dy}), expected[i]) << i;
    }
}

TEST(NeighbourTable, DistanceIsTheRoundedRootTimesTheSpacing) {
    const float spacing = 0x1.08daaap-2f;
    const NeighbourTable table = MakeTable(7, 9, spacing);
    for (const NeighbourOffset& entry : table.entries) {
        const float cells =
            std::sqrt(static_cast<float>(entry.dx * entry.dx + entry.dy * entry.dy));
        EXPECT_EQ(entry.distance, cells * spacing);
    }
}

TEST(NeighbourTable, SingleCellHasASingleEntry) {
    const NeighbourTable table = MakeTable(1, 1, 2.0f);
    ASSERT_EQ(table.count, 1);
    EXPECT_EQ(table.entries[0].distance, 0.0f);
}

TEST(NeighbourTable, FewerThanThreeEntriesAreNotSorted) {
    std::vector<NeighbourOffset> entries{{1, 0, 2.0f}, {0, 0, 1.0f}};
    SortNeighbourTablePlain(entries);
    EXPECT_EQ(entries[0].distance, 2.0f);
    EXPECT_EQ(entries[1].distance, 1.0f);
}

TEST(NeighbourTable, SingleRowSortsByColumn) {
    const NeighbourTable table = MakeTable(1, 3, 1.0f);
    const std::int32_t expected[] = {0, -1, 1, -2, 2};
    ASSERT_EQ(table.count, 5);
    for (std::size_t i = 0; i < 5; ++i) {
        EXPECT_EQ(table.entries[i].dx, expected[i]);
        EXPECT_EQ(table.entries[i].dy, 0);
    }
}

TEST(NeighbourTable, GridWithoutCellsHasNoEntries) {
    NeighbourTable table = MakeTable(2, 2, 1.0f);
    BuildNeighbourTable(table, 0, 5, 1.0f);
    EXPECT_EQ(table.count, 0);
    EXPECT_TRUE(table.entries.empty());
}

TEST(NeighbourTable, ReplacesWhatItHeld) {
    NeighbourTable table = MakeTable(9, 9, 1.0f);
    BuildNeighbourTable(table, 2, 3, 0.5f);
    NeighbourTable plain;
    BuildNeighbourTablePlain(plain, 2, 3, 0.5f);
    ExpectSameTables(table, plain);
}

TEST(NeighbourTable, IsTheMergeSortedList) {
    TestRandom random(3);
    const std::uint32_t cases = CaseCount(200);
    for (std::uint32_t i = 0; i < cases; ++i) {
        const std::int32_t rows = 1 + static_cast<std::int32_t>(random.Below(24));
        const std::int32_t cols = 1 + static_cast<std::int32_t>(random.Below(40));
        const float spacing = RandomSpacing(random);
        NeighbourTable plain;
        BuildNeighbourTablePlain(plain, rows, cols, spacing);
        ExpectSameTables(MakeTable(rows, cols, spacing), plain);
    }
}

TEST(NeighbourTable, IsTheMergeSortedListWhereDistancesRunTogether) {
    // Many lengths round to one distance: at the denormal end, beyond the largest float, at 0.
    for (const float spacing : {0.0f, 1e-45f, 3e-44f, 1.2e-38f, 1e37f, 3e38f}) {
        NeighbourTable plain;
        BuildNeighbourTablePlain(plain, 12, 17, spacing);
        ExpectSameTables(MakeTable(12, 17, spacing), plain);
    }
}

TEST(NeighbourTable, IsTheMergeSortedListWhereRootsRunTogether) {
    // From 2^22 square cells on neighbouring integers share a root.
    NeighbourTable plain;
    BuildNeighbourTablePlain(plain, 1, 2400, 0.01f);
    ExpectSameTables(MakeTable(1, 2400, 0.01f), plain);
    BuildNeighbourTablePlain(plain, 20, 2900, 0.013f);
    ExpectSameTables(MakeTable(20, 2900, 0.013f), plain);
}

TEST(NeighbourTable, KnownTables) {
    const NeighbourTable wide = MakeTable(400, 400, 0x1.08daaap-2f);
    EXPECT_EQ(wide.count, 638401);
    EXPECT_EQ(HashOf(wide), 0xbeaff69b86b8c5f7ULL);
    EXPECT_EQ(HashOf(MakeTable(400, 400, 0x1.0fffc2p-8f)), 0x16822601678e1b13ULL);
}

TEST(DistanceIndex, KnownIndexes) {
    for (const auto& [spacing, expected] : {std::pair{0x1.08daaap-2f, 0xead2b7e08e4577eeULL},
                                            std::pair{0x1.0fffc2p-8f, 0xf57b32f90df521b2ULL}}) {
        ProcessModel model;
        SetUpGrid(model, 400, 400, spacing);
        WordHash hash;
        for (const std::int32_t position : model.grid.distanceIndex) {
            hash.Take(position);
        }
        EXPECT_EQ(hash.Value(), expected);
    }
}

TEST(DistanceIndex, SlotZeroIsTheCellItself) {
    ProcessModel model;
    SetUpGrid(model, 20, 15, 0.125f);
    ASSERT_EQ(model.grid.distanceIndex.size(), 40U);
    EXPECT_EQ(model.grid.distanceIndex[0], 0);
}

TEST(DistanceIndex, SlotHoldsTheLastEntryOfItsDistance) {
    ProcessModel model;
    SetUpGrid(model, 20, 15, 0.125f);
    // Slot 1 takes in the four neighbours and the four diagonals, slot 2 what is nearer than 3.
    EXPECT_EQ(model.grid.distanceIndex[1], 8);
    EXPECT_EQ(model.grid.distanceIndex[2], 24);
    // The farthest offset, (19, 14), is 23.6 cells away.
    EXPECT_EQ(model.grid.distanceIndex[23], model.grid.neighbours.count - 1);
    for (std::size_t slot = 24; slot < 40; ++slot) {
        EXPECT_EQ(model.grid.distanceIndex[slot], 0);
    }
}

TEST(DistanceIndex, TruncatesTheSinglePrecisionQuotient) {
    // With this spacing some whole distances divide back to just under the whole number.
    ProcessModel model;
    SetUpGrid(model, 60, 60, 0.1f);
    std::vector<std::int32_t> expected(120, 0);
    for (std::int32_t i = 0; i < model.grid.neighbours.count; ++i) {
        const float distance = model.grid.neighbours.entries[static_cast<std::size_t>(i)].distance;
        expected[static_cast<std::size_t>(distance / 0.1f)] = i;
    }
    EXPECT_EQ(model.grid.distanceIndex, expected);
}

TEST(DistanceIndex, SkipsQuotientsThatAreNoSlot) {
    for (const float spacing : {0.0f, 1e-45f, 3e38f, infinity, nan, -1.0f}) {
        ProcessModel model;
        SetUpGrid(model, 30, 2, spacing);
        ASSERT_EQ(model.grid.distanceIndex.size(), 60U);
        for (const std::int32_t position : model.grid.distanceIndex) {
            EXPECT_GE(position, 0);
            EXPECT_LT(position, model.grid.neighbours.count);
        }
    }
}

TEST(DistanceIndex, TallGridDoesNotWriteBehindTheIndex) {
    ProcessModel model;
    SetUpGrid(model, 3, 40, 1.0f);
    EXPECT_EQ(model.grid.distanceIndex.size(), 6U);
}

TEST(DiscOffsets, RadiusZeroIsTheCellItself) {
    ProcessModel model;
    SetUpGrid(model, 10, 10, 0.3f);
    EXPECT_EQ(SelectDiscOffsets(model.grid, 0.0f), (std::vector<GridOffset>{{0, 0}}));
}

TEST(DiscOffsets, TakesInWhatLiesOnTheEdge) {
    ProcessModel model;
    SetUpGrid(model, 10, 10, 0.25f);
    EXPECT_EQ(SelectDiscOffsets(model.grid, 0.25f),
              (std::vector<GridOffset>{{0, 0}, {0, -1}, {-1, 0}, {1, 0}, {0, 1}}));
    EXPECT_EQ(SelectDiscOffsets(model.grid, 0.2499f).size(), 1U);
}

TEST(DiscOffsets, EndAtTheFirstEntryThatIsTooFar) {
    ProcessModel model;
    SetUpGrid(model, 10, 10, 0.25f);
    EXPECT_TRUE(SelectDiscOffsets(model.grid, -1.0f).empty());
    const auto all = static_cast<std::size_t>(model.grid.neighbours.count);
    EXPECT_EQ(SelectDiscOffsets(model.grid, 1000.0f).size(), all);
    EXPECT_EQ(SelectDiscOffsets(model.grid, infinity).size(), all);
    EXPECT_EQ(SelectDiscOffsets(model.grid, nan).size(), all) << "no entry is farther than a NaN";
}

TEST(LeavingOffsets, RadiusZeroIsTheCellOnTheLeft) {
    ProcessModel model;
    SetUpGrid(model, 10, 10, 0.3f);
    EXPECT_EQ(SelectLeavingOffsets(model.grid, 0.0f), (std::vector<GridOffset>{{-1, 0}}));
}

TEST(LeavingOffsets, StandInTableOrder) {
    ProcessModel model;
    SetUpGrid(model, 10, 10, 1.0f);
    EXPECT_EQ(SelectLeavingOffsets(model.grid, 1.0f),
              (std::vector<GridOffset>{{-1, -1}, {-1, 1}, {-2, 0}}));
}

TEST(LeavingOffsets, AreTheCellsThatTheDiscLeavesAwayFromTies) {
    TestRandom random(4);
    ProcessModel model;
    SetUpGrid(model, 40, 40, 0.37f);
    for (int i = 0; i < 50; ++i) {
        // Half-way between two squared lengths no cell lies on the edge.
        const float squared = static_cast<float>(random.Below(200)) + 0.5f;
        const float radius = std::sqrt(squared) * 0.37f;
        const std::vector<GridOffset> disc = SelectDiscOffsets(model.grid, radius);
        std::vector<GridOffset> expected;
        for (const NeighbourOffset& entry : model.grid.neighbours.entries) {
            const GridOffset offset{entry.dx, entry.dy};
            const GridOffset next{entry.dx + 1, entry.dy};
            if (std::find(disc.begin(), disc.end(), offset) == disc.end() &&
                std::find(disc.begin(), disc.end(), next) != disc.end()) {
                expected.push_back(offset);
            }
        }
        EXPECT_EQ(SelectLeavingOffsets(model.grid, radius), expected) << radius;
    }
}

TEST(LeavingOffsets, LieOnTheLeft) {
    TestRandom random(5);
    ProcessModel model;
    SetUpGrid(model, 60, 30, 0.0137f);
    for (int i = 0; i < 40; ++i) {
        for (const GridOffset& offset : SelectLeavingOffsets(model.grid, random.Unit())) {
            ASSERT_LT(offset.dx, 0);
        }
    }
}

TEST(LeavingOffsets, OnATieTheTwoPrecisionsCanDisagree) {
    // A radius that is a whole number of cells, rounded as a product or as a sum: the disc is
    // tested in single precision, the cells that leave in double.
    ProcessModel model;
    SetUpGrid(model, 64, 64, 0.1f);
    int disagreements = 0;
    for (std::int32_t cells = 1; cells < 60; ++cells) {
        const float radius = static_cast<float>(cells) * 0.1f;
        const auto disc = SelectDiscOffsets(model.grid, radius);
        const auto leaving = SelectLeavingOffsets(model.grid, radius);
        const bool inDisc = std::find(disc.begin(), disc.end(), GridOffset{cells, 0}) != disc.end();
        const bool leaves =
            std::find(leaving.begin(), leaving.end(), GridOffset{-cells - 1, 0}) != leaving.end();
        EXPECT_TRUE(inDisc);
        EXPECT_EQ(leaves, cells * static_cast<double>(0.1f) <= static_cast<double>(radius));
        disagreements += inDisc != leaves;
    }
    EXPECT_GT(disagreements, 0);
}

TEST(LeavingOffsets, NoneForARadiusThatEndsNowhere) {
    ProcessModel model;
    SetUpGrid(model, 10, 10, 0.3f);
    EXPECT_TRUE(SelectLeavingOffsets(model.grid, infinity).empty());
    EXPECT_TRUE(SelectLeavingOffsets(model.grid, nan).empty());
    EXPECT_TRUE(SelectLeavingOffsets(model.grid, -1.0f).empty());
}

TEST(OffsetSelection, IsTheWalkOverTheWholeTable) {
    TestRandom random(6);
    const std::uint32_t cases = CaseCount(200);
    for (std::uint32_t i = 0; i < cases; ++i) {
        ProcessModel model;
        const std::int32_t cols = 1 + static_cast<std::int32_t>(random.Below(50));
        const std::int32_t rows = 1 + static_cast<std::int32_t>(random.Below(50));
        SetUpGrid(model, cols, rows, RandomSpacing(random));
        // Many radii are a distance of the table, or next to it, so that cells lie on the edge.
        const NeighbourOffset& entry =
            model.grid.neighbours
                .entries[random.Below(static_cast<std::uint32_t>(model.grid.neighbours.count))];
        const float radii[] = {entry.distance, std::nextafter(entry.distance, 0.0f),
                               std::nextafter(entry.distance, infinity),
                               20.0f * model.grid.spacing * random.Unit()};
        const float radius = radii[i % 4];
        ASSERT_EQ(SelectDiscOffsets(model.grid, radius),
                  SelectDiscOffsetsPlain(model.grid, radius));
        ASSERT_EQ(SelectLeavingOffsets(model.grid, radius),
                  SelectLeavingOffsetsPlain(model.grid, radius))
            << model.grid.spacing << ", " << radius;
    }
}

TEST(DistanceIndex, IsTheWalkOverTheWholeTable) {
    TestRandom random(7);
    const std::uint32_t cases = CaseCount(200);
    for (std::uint32_t i = 0; i < cases; ++i) {
        ProcessModel model;
        const std::int32_t cols = 1 + static_cast<std::int32_t>(random.Below(50));
        const std::int32_t rows = 1 + static_cast<std::int32_t>(random.Below(80));
        SetUpGrid(model, cols, rows, RandomSpacing(random));
        std::vector<std::int32_t> expected(2 * static_cast<std::size_t>(cols), 0);
        for (std::int32_t entry = 0; entry < model.grid.neighbours.count; ++entry) {
            const std::int32_t slot = TruncateToI32(
                model.grid.neighbours.entries[static_cast<std::size_t>(entry)].distance /
                model.grid.spacing);
            if (slot >= 0 && slot < 2 * cols) {
                expected[static_cast<std::size_t>(slot)] = entry;
            }
        }
        ASSERT_EQ(model.grid.distanceIndex, expected) << cols << " by " << rows;
    }
}

}  // namespace
}  // namespace zelmo
