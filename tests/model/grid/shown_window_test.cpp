#include "model/grid/shown_window.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

#include "model/grid/grid.h"

namespace zelmo {
namespace {

TEST(ShownWindow, LeavesTheMarginOutOnEachSide) {
    const ShownWindow window = FindShownWindow(13, 11, 2, 1);
    EXPECT_EQ(window.cols, 9);
    EXPECT_EQ(window.rows, 9);
    EXPECT_EQ(window.GridIndex(0, 0), 1U * 13U + 2U);
    EXPECT_EQ(window.GridIndex(8, 8), 9U * 13U + 10U);
}

TEST(ShownWindow, IsEmptyWhereTheMarginsLeaveNothing) {
    for (const std::int32_t margin : {3, 4, std::numeric_limits<std::int32_t>::max()}) {
        const ShownWindow flat = FindShownWindow(20, 6, 1, margin);
        EXPECT_EQ(flat.cols, 0);
        EXPECT_EQ(flat.rows, 0);
        const ShownWindow narrow = FindShownWindow(6, 20, margin, 1);
        EXPECT_EQ(narrow.cols, 0);
        EXPECT_EQ(narrow.rows, 0);
    }
}

TEST(ShownWindow, TakesAMarginBelowNothingForNone) {
    const ShownWindow window = FindShownWindow(5, 4, -1, std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(window.cols, 5);
    EXPECT_EQ(window.rows, 4);
    EXPECT_EQ(window.GridIndex(0, 0), 0U);
}

TEST(ShownWindow, OfAGridLeavesOutWholeCells) {
    Grid grid;
    grid.columns = 12;
    grid.rows = 9;
    grid.spacing = 0.5f;
    grid.marginX = 0.999f;
    grid.marginY = 1.0f;
    const ShownWindow window = FindShownWindow(grid);
    EXPECT_EQ(window.marginCols, 1);
    EXPECT_EQ(window.marginRows, 2);
    EXPECT_EQ(window.cols, 10);
    EXPECT_EQ(window.rows, 5);
    EXPECT_EQ(window.GridIndex(0, 0), 25U);
}

}  // namespace
}  // namespace zelmo
