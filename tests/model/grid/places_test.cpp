#include "model/grid/places.h"

#include <gtest/gtest.h>

#include "model/grid/grid.h"
#include "model/grid/shown_window.h"
#include "model/process.h"
#include "tests/model/grid_model.h"

namespace zelmo {
namespace {

ProcessSettings MakeSettings(float x, float y, float width, float height, std::int32_t columns) {
    ProcessSettings settings;
    settings.gridColumns = columns;
    settings.windowX = x;
    settings.windowY = y;
    settings.windowWidth = width;
    settings.windowHeight = height;
    return settings;
}

Grid MakeGrid(const ProcessSettings& settings) {
    Grid grid;
    SizeGrid(grid, settings);
    return grid;
}

TEST(Places, TheGridsCornerIsItsFirstCell) {
    const Grid grid = MakeGrid(MakeSettings(10, 20, 100, 50, 121));
    EXPECT_EQ(PositionOnGrid(grid, {grid.originX, grid.originY}), (GridPosition{0.0, 0.0}));
    EXPECT_EQ(PlaceOnLayout(grid, {0.0, 0.0}), (Place{grid.originX, grid.originY}));
    // A margin of ten columns of 1 um, and of five rows.
    const GridPosition corner = PositionOnGrid(grid, {10.0, 20.0});
    EXPECT_NEAR(corner.col, 10.0, 1e-5);
    EXPECT_NEAR(corner.row, 5.0, 1e-5);
}

TEST(Places, BackAndForthIsTheSame) {
    TestRandom random(3);
    for (int i = 0; i < 300; ++i) {
        const auto columns = static_cast<std::int32_t>(200 + random.Below(1800));
        const float width = 0.05f + 100.0f * random.Unit();
        const ProcessSettings settings =
            MakeSettings(200.0f * random.Unit() - 100.0f, 200.0f * random.Unit() - 100.0f, width,
                         width * (0.05f + 0.95f * random.Unit()), columns);
        const Grid grid = MakeGrid(settings);
        const double col = random.Below(static_cast<std::uint32_t>(grid.columns));
        const double row = random.Below(static_cast<std::uint32_t>(grid.rows));
        const GridPosition back = PositionOnGrid(grid, PlaceOnLayout(grid, {col, row}));
        EXPECT_NEAR(back.col, col, 1e-6);
        EXPECT_NEAR(back.row, row, 1e-6);
    }
}

TEST(Places, TheWindowLiesOnTheCellsThatAreShown) {
    TestRandom random(4);
    for (int i = 0; i < 300; ++i) {
        const auto columns = static_cast<std::int32_t>(200 + random.Below(1800));
        const float width = 1.0f + 100.0f * random.Unit();
        const ProcessSettings settings =
            MakeSettings(20.0f * random.Unit(), 20.0f * random.Unit(), width,
                         width * (0.1f + 0.9f * random.Unit()), columns);
        const Grid grid = MakeGrid(settings);
        const ShownWindow shown = FindShownWindow(grid);
        const auto [low, high] = LocationWindow(settings);
        const GridPosition first = PositionOnGrid(grid, low);
        const GridPosition last = PositionOnGrid(grid, high);
        EXPECT_GE(first.col, shown.marginCols - 1e-3);
        EXPECT_LT(first.col, shown.marginCols + 1);
        EXPECT_GE(first.row, shown.marginRows - 1e-3);
        EXPECT_LT(first.row, shown.marginRows + 1);
        EXPECT_LE(last.col, shown.marginCols + shown.cols - 1 + 1e-3);
        // The grid's height is a whole number of cells, the nearest one.
        EXPECT_LE(last.row, shown.marginRows + shown.rows - 1 + 0.501);
    }
}

TEST(Places, BeyondTheGridTheNearestPointIsTaken) {
    // One row of cells under a window that is a fifth of a cell high.
    const ProcessSettings settings = MakeSettings(0, 0, 100, 0.1f, 200);
    const Grid grid = MakeGrid(settings);
    ASSERT_EQ(grid.rows, 1);
    EXPECT_EQ(PositionOnGrid(grid, {50.0, 0.1}).row, 0.0);
    EXPECT_EQ(PositionOnGrid(grid, {-1000.0, 0.0}).col, 0.0);
    EXPECT_EQ(PositionOnGrid(grid, {1000.0, 0.0}).col, 199.0);
}

TEST(LiesInWindow, EdgesBelongToTheWindow) {
    // None of these is a number of single precision.
    const ProcessSettings settings = MakeSettings(0.1f, 0.2f, 0.7f, 0.3f, 200);
    for (const Place& place :
         {Place{0.1, 0.2}, Place{0.8, 0.5}, Place{0.1, 0.5}, Place{0.8, 0.2}, Place{0.4, 0.3}}) {
        EXPECT_TRUE(LiesInWindow(settings, place)) << place.x << ", " << place.y;
    }
    for (const Place& place : {Place{0.0999, 0.3}, Place{0.8001, 0.3}, Place{0.3, 0.1999},
                               Place{0.3, 0.5001}, Place{300, 300}}) {
        EXPECT_FALSE(LiesInWindow(settings, place)) << place.x << ", " << place.y;
    }
}

TEST(LayoutUnit, IsThatOfTheProcessFile) {
    ProcessSettings settings = MakeSettings(0, 0, 1, 1, 200);
    EXPECT_EQ(LayoutUnitName(settings), "um");
    EXPECT_EQ(FromLayoutUnit(settings, {1.5, 2.5}), (Place{1.5, 2.5}));
    settings.lengthsInNanometres = true;
    EXPECT_EQ(LayoutUnitName(settings), "nm");
    EXPECT_EQ(FromLayoutUnit(settings, {1500.0, 2.0}), (Place{1.5, 0.002}));
    EXPECT_EQ(InLayoutUnit(settings, {1.5, 0.002}), (Place{1500.0, 2.0}));
}

}  // namespace
}  // namespace zelmo
