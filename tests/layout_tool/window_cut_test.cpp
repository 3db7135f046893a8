#include <gtest/gtest.h>

#include <random>

#include "layout_tool/cell_facts.h"
#include "tests/gds/layout_file.h"

namespace zelmo {
namespace {

using Points = std::vector<GdsPoint>;

TEST(AreaWithin, IsThatOfThePartInTheWindow) {
    const Points square{{0, 0}, {10, 0}, {10, 10}, {0, 10}, {0, 0}};
    EXPECT_EQ(AreaWithin(square, -5, -5, 20, 20), 100.0);
    EXPECT_EQ(AreaWithin(square, 5, 5, 20, 20), 25.0);
    EXPECT_EQ(AreaWithin(square, 2, -5, 3, 20), 10.0);
    EXPECT_EQ(AreaWithin(square, 2.25, 2.5, 2.75, 3.5), 0.5);
    EXPECT_EQ(AreaWithin(square, 10, 0, 20, 10), 0.0);
    EXPECT_EQ(AreaWithin(square, 30, 0, 40, 10), 0.0);
    EXPECT_EQ(AreaWithin({{0, 0}, {10, 0}, {10, 10}}, 0, 0, 5, 5), 12.5);
    EXPECT_EQ(AreaWithin({}, 0, 0, 1, 1), 0.0);
}

/// Steps up and down along x, down to 0: the area over each column is its height.
TEST(AreaWithin, HoldsForShapesThatTheWindowCutsIntoPieces) {
    std::mt19937 random(3);
    for (int round = 0; round < 300; ++round) {
        const std::int64_t columns = 1 + random() % 12;
        std::vector<std::int64_t> heights;
        Points comb{{0, 0}};
        for (std::int64_t i = 0; i < columns; ++i) {
            heights.push_back(1 + random() % 9);
            comb.push_back({i, heights.back()});
            comb.push_back({i + 1, heights.back()});
        }
        comb.push_back({columns, 0});
        const auto x0 = static_cast<std::int64_t>(random() % 10) - 2;
        const auto y0 = static_cast<std::int64_t>(random() % 10) - 2;
        const std::int64_t x1 = x0 + 1 + random() % 10;
        const std::int64_t y1 = y0 + 1 + random() % 10;
        double expected = 0.0;
        for (std::int64_t i = std::max<std::int64_t>(x0, 0); i < std::min(x1, columns); ++i) {
            const std::int64_t height = std::min(heights[i], y1) - std::max<std::int64_t>(y0, 0);
            expected += static_cast<double>(std::max<std::int64_t>(height, 0));
        }
        EXPECT_EQ(AreaWithin(comb, static_cast<double>(x0), static_cast<double>(y0),
                             static_cast<double>(x1), static_cast<double>(y1)),
                  expected)
            << round;
    }
}

}  // namespace
}  // namespace zelmo
