#include "report/page_grid.h"

#include <gtest/gtest.h>

#include "model/grid/shown_window.h"
#include "tests/results/random_stack.h"
#include "tests/support/case_count.h"

namespace zelmo {
namespace {

/// The gaps between neighbouring cells but for the last one.
void ExpectEven(const std::vector<std::int32_t>& cells, std::int32_t step) {
    for (std::size_t i = 1; i < cells.size(); ++i) {
        const std::int32_t gap = cells[i] - cells[i - 1];
        EXPECT_TRUE(gap == step || (i + 1 == cells.size() && gap > 0 && gap < step)) << gap;
    }
}

TEST(ThinGrid, TakesEveryFewCellsOfTheWindowAndTheLast) {
    for (std::uint32_t seed = 0; seed < CaseCount(200); ++seed) {
        const auto model = MakeRandomStack(seed);
        const ShownWindow window = FindShownWindow(model->grid);
        ASSERT_GT(window.cols, 1);
        for (const std::int32_t most : {2, 3, 7, 20, 1000}) {
            const PageGrid thin = ThinGrid(model->grid, most);
            ASSERT_LE(thin.cols.size(), static_cast<std::size_t>(most));
            EXPECT_EQ(thin.cols.front(), window.marginCols);
            EXPECT_EQ(thin.cols.back(), window.marginCols + window.cols - 1);
            EXPECT_EQ(thin.rows.front(), window.marginRows);
            EXPECT_EQ(thin.rows.back(), window.marginRows + window.rows - 1);
            const std::int32_t step = thin.cols[1] - thin.cols[0];
            ExpectEven(thin.cols, step);
            ExpectEven(thin.rows, step);
            if (step > 1 && thin.cols.size() > 2) {
                const std::int32_t finer = (window.cols - 1 + step - 2) / (step - 1) + 1;
                EXPECT_GT(finer, most) << "a smaller step would do";
            }
        }
        EXPECT_EQ(ThinGrid(model->grid, 1000).CellCount(),
                  static_cast<std::size_t>(window.cols) * static_cast<std::size_t>(window.rows));
    }
}

TEST(ThinGrid, PositionsCountFromTheWindowsCornerAndReachItsEdges) {
    for (std::uint32_t seed = 0; seed < CaseCount(100); ++seed) {
        const auto model = MakeRandomStack(seed);
        const PageGrid thin = ThinGrid(model->grid, 9);
        const PagePositions positions = FindPagePositions(thin, model->grid, model->settings);
        ASSERT_EQ(positions.x.size(), thin.cols.size());
        ASSERT_EQ(positions.y.size(), thin.rows.size());
        const double spacing = model->grid.spacing;
        const double slack = 1e-5;
        EXPECT_LE(positions.x.front(), slack);
        EXPECT_GT(positions.x.front(), -spacing - slack);
        EXPECT_GE(positions.x.back(), double{model->settings.windowWidth} - slack);
        EXPECT_LT(positions.x.back(), double{model->settings.windowWidth} + spacing + slack);
        EXPECT_LE(positions.y.front(), slack);
        EXPECT_GE(positions.y.back(), double{model->settings.windowHeight} - spacing);
        for (std::size_t i = 1; i < thin.cols.size(); ++i) {
            EXPECT_NEAR(positions.x[i] - positions.x[i - 1],
                        spacing * (thin.cols[i] - thin.cols[i - 1]), 1e-9);
        }
    }
}

TEST(ThinGrid, WindowsThatPicturesShowNothingOfHaveNoCells) {
    Grid grid;
    grid.columns = 10;
    grid.rows = 10;
    grid.spacing = 1.0f;
    grid.marginX = 5.0f;
    EXPECT_EQ(ThinGrid(grid, 200).CellCount(), 0u);
}

}  // namespace
}  // namespace zelmo
