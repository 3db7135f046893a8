#include "render/highest_surface.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

#include "model/stack.h"

namespace zelmo {
namespace {

TEST(HighestSurface, IsTheHighestPointOfTheCover) {
    std::vector<CoverCell> cover(100, CoverCell{0, 2.0f});
    cover[17].height = 3.5f;
    cover[3].height = -9.0f;
    EXPECT_EQ(HighestSurface(cover), 3.5f);
}

TEST(HighestSurface, IsTheSmallestNormalNumberOverACoverWithoutHeight) {
    EXPECT_EQ(HighestSurface(std::vector<CoverCell>(100)), 1.1754944e-38f);
    EXPECT_EQ(HighestSurface(std::vector<CoverCell>(100, {0, -3.0f})), 1.1754944e-38f);
    EXPECT_EQ(HighestSurface({}), 1.1754944e-38f);
}

TEST(HighestSurface, IgnoresHeightsThatAreNoNumbers) {
    std::vector<CoverCell> cover(100, CoverCell{0, 2.0f});
    cover.front().height = std::numeric_limits<float>::quiet_NaN();
    cover.back().height = std::numeric_limits<float>::quiet_NaN();
    EXPECT_EQ(HighestSurface(cover), 2.0f);
}

}  // namespace
}  // namespace zelmo
