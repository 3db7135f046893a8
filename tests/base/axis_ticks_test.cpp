#include "base/axis_ticks.h"

#include <gtest/gtest.h>

#include <limits>

namespace zelmo {
namespace {

std::vector<std::string> Labels(double from, double to, int count) {
    std::vector<std::string> labels;
    for (const AxisTick& tick : AxisTicks(from, to, (to - from) / count)) {
        labels.push_back(tick.label);
    }
    return labels;
}

using Texts = std::vector<std::string>;

TEST(AxisTicks, AreRoundNumbers) {
    EXPECT_EQ(Labels(0.0, 10.0, 5), (Texts{"0", "2", "4", "6", "8", "10"}));
    EXPECT_EQ(Labels(-0.3, 0.25, 6), (Texts{"-0.3", "-0.2", "-0.1", "0.0", "0.1", "0.2"}));
    EXPECT_EQ(Labels(1999.0, 2020.0, 2), (Texts{"2000", "2020"}));
    EXPECT_EQ(Labels(0.0, 0.0004, 4), (Texts{"0.0000", "0.0001", "0.0002", "0.0003", "0.0004"}));
    EXPECT_EQ(Labels(0.0, 1.8, 2), (Texts{"0", "1"}));
}

TEST(AxisTicks, AreNoneWhereThereIsNoRange) {
    constexpr double infinite = std::numeric_limits<double>::infinity();
    for (const auto& [from, to] : std::vector<std::pair<double, double>>{{1.0, 1.0},
                                                                         {2.0, 1.0},
                                                                         {0.0, infinite},
                                                                         {-infinite, 0.0},
                                                                         {0.0, infinite - infinite},
                                                                         {1e30, 1e30 + 1e20},
                                                                         {1e18, 1e18 + 1000.0},
                                                                         {0.0, 1e300},
                                                                         {0.0, 1e-300}}) {
        EXPECT_TRUE(AxisTicks(from, to, (to - from) / 5).empty()) << from << ' ' << to;
    }
    for (const double step : {0.0, -1.0, 1e-9, infinite, infinite - infinite}) {
        EXPECT_TRUE(AxisTicks(0.0, 10.0, step).empty()) << step;
    }
}

TEST(AxisTicks, AreAFewAndLieInside) {
    for (double range = 1e-9; range < 1e9; range *= 3.7) {
        const auto ticks = AxisTicks(-0.3 * range, 0.7 * range, range / 8);
        EXPECT_GE(ticks.size(), 3u) << range;
        EXPECT_LE(ticks.size(), 9u) << range;
        for (const AxisTick& tick : ticks) {
            EXPECT_GE(tick.at, -0.3 * range - 1e-9 * range);
            EXPECT_LE(tick.at, 0.7 * range + 1e-9 * range);
        }
    }
}

}  // namespace
}  // namespace zelmo
