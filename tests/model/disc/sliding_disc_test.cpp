// The filters over discs against their plain versions, bit for bit, on random grids.

#include "model/disc/sliding_disc.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "base/lanes.h"
#include "base/row_bands.h"
#include "model/disc/disc_filter.h"
#include "model/mask/mask.h"
#include "tests/model/grid_model.h"
#include "tests/plain/disc_filter_plain.h"
#include "tests/plain/mask_plain.h"
#include "tests/support/case_count.h"
#include "tests/support/strange_numbers.h"

namespace zelmo {
namespace {

/// Small grids, some of them single rows or columns, and larger ones over several bands of rows.
void SetUpRandomGrid(ProcessModel& model, TestRandom& random) {
    const std::uint32_t most = random.Below(8) == 0 ? 90 : 20;
    const auto side = [&random, most] {
        return random.Below(8) == 0 ? 1 : static_cast<std::int32_t>(1 + random.Below(most));
    };
    const std::int32_t cols = side();
    // The last three leave the distances few or no digits.
    constexpr float spacings[] = {1.0f,   0.1f,     12.5f,    1.0f / 3.0f,
                                  0.013f, 1.0e-45f, 2.0e-44f, 3e38f};
    SetUpGrid(model, cols, side(), spacings[random.Below(random.Below(4) == 0 ? 8 : 5)]);
}

/// Mostly a distance of the grid, where the cells at the disc's edge can be in or out.
float RandomRadius(const ProcessModel& model, TestRandom& random) {
    if (random.Below(2) == 0) {
        const std::vector<NeighbourOffset>& entries = model.grid.neighbours.entries;
        const auto count = static_cast<std::uint32_t>(entries.size());
        return entries[random.Below(random.Below(2) == 0 ? count : 1 + count / 8)].distance;
    }
    const float radii[] = {0.0f, -0.0f, infinity, nan, -1.0f};
    return random.Below(8) == 0 ? radii[random.Below(5)]
                                : 12.0f * random.Unit() * model.grid.spacing;
}

/// Calls `compare` with all widths of lanes and 1 to 3 threads.
void WithAllLanesAndThreads(const std::function<void()>& compare) {
    for (const bool wide : {false, true}) {
        AllowWideLanes(wide);
        for (std::int32_t threads = 1; threads <= 3; ++threads) {
            SetRowThreads(threads);
            SCOPED_TRACE(testing::Message() << "wide " << wide << ", threads " << threads);
            compare();
        }
    }
    SetRowThreads(0);
}

/// Heights as they are in a stack, heights of very different size, or both with NaN, infinities,
/// zeros of both signs and the ends of the range.
std::vector<float> RandomHeights(std::size_t count, TestRandom& random) {
    std::vector<float> heights(count);
    const bool inStack = random.Below(3) == 0;
    const std::uint32_t strangers = random.Below(3) == 0 ? 2 + random.Below(200) : 0;
    for (float& height : heights) {
        height = random.Unit() + 0.5f;
        if (!inStack) {
            height = std::ldexp(height - 0.75f, static_cast<int>(random.Below(60)) - 30);
        }
        if (strangers > 0 && random.Below(strangers) == 0) {
            const float values[] = {nan,   infinity, -infinity, 0.0f,
                                    -0.0f, 3.4e38f,  -3.4e38f,  1e-45f};
            height = values[random.Below(8)];
        }
    }
    return heights;
}

TEST(SlidingDisc, TheCoatingFilterGivesThePlainBits) {
    const std::uint32_t cases = CaseCount(700);
    for (std::uint32_t seed = 0; seed < cases; ++seed) {
        TestRandom random(seed);
        ProcessModel model;
        SetUpRandomGrid(model, random);
        const float radius = RandomRadius(model, random);
        const auto plain = CreateLayer(model.grid);
        const std::vector<float> heights = RandomHeights(model.grid.CellCount(), random);
        plain->top = heights;
        plain->bottom = RandomHeights(model.grid.CellCount(), random);
        SmoothLayerTopPlain(model.grid, *plain, radius);
        WithAllLanesAndThreads([&] {
            const auto layer = CreateLayer(model.grid);
            layer->top = heights;
            layer->bottom = plain->bottom;
            SmoothLayerTop(model.grid, *layer, radius);
            EXPECT_EQ(BitsOf(layer->top), BitsOf(plain->top));
        });
        ASSERT_FALSE(HasFailure()) << "seed " << seed << ", radius " << radius;
    }
}

TEST(SlidingDisc, TheBlurGivesThePlainMask) {
    const std::uint32_t cases = CaseCount(700);
    for (std::uint32_t seed = 0; seed < cases; ++seed) {
        TestRandom random(seed);
        ProcessModel model;
        SetUpRandomGrid(model, random);
        const float radius = RandomRadius(model, random);
        std::vector<std::uint8_t> rawMask(model.grid.CellCount());
        const std::uint32_t share = 1 + random.Below(8);
        for (std::uint8_t& cell : rawMask) {
            cell = static_cast<std::uint8_t>(random.Below(8) < share ? random.Below(256) : 0);
        }
        std::vector<std::uint8_t> plain(model.grid.CellCount(), 5);
        BlurMaskPlain(model.grid, plain, rawMask, radius);
        WithAllLanesAndThreads([&] {
            std::vector<std::uint8_t> mask(model.grid.CellCount(), 6);
            BlurMask(model.grid, mask, rawMask, radius);
            EXPECT_EQ(mask, plain);
        });
        ASSERT_FALSE(HasFailure()) << "seed " << seed << ", radius " << radius;
    }
}

/// How many cells the disc holds at each column of a row, by taking every step.
std::vector<std::int32_t> CountsByEveryStep(const SlidingDisc& disc, std::int32_t row) {
    std::vector<std::int32_t> counts;
    std::int32_t count = 0;
    const auto take = [&](std::int32_t col, std::int32_t dy, std::int32_t change) {
        const bool inGrid = col >= 0 && col < disc.cols && row + dy >= 0 && row + dy < disc.rows;
        count += inGrid ? change : 0;
    };
    for (const GridOffset& offset : disc.inside) {
        take(offset.dx, offset.dy, 1);
    }
    counts.push_back(count);
    for (std::int32_t col = 1; col < disc.cols; ++col) {
        for (const GridOffset& offset : disc.leaving) {
            take(col + offset.dx, offset.dy, -1);
            take(col - offset.dx - 1, offset.dy, 1);
        }
        counts.push_back(count);
    }
    return counts;
}

/// How many cells of a disc that has not slid are in the grid.
std::int32_t CellsAround(const SlidingDisc& disc, std::int32_t col, std::int32_t row) {
    std::int32_t count = 0;
    for (const GridOffset& offset : disc.inside) {
        const std::int32_t x = col + offset.dx;
        const std::int32_t y = row + offset.dy;
        count += x >= 0 && x < disc.cols && y >= 0 && y < disc.rows ? 1 : 0;
    }
    return count;
}

TEST(SlidingDisc, CountsAreThoseOfEveryStep) {
    int disagreements = 0;
    for (std::uint32_t seed = 0; seed < CaseCount(300); ++seed) {
        TestRandom random(seed);
        ProcessModel model;
        SetUpRandomGrid(model, random);
        const SlidingDisc disc = SelectSlidingDisc(model.grid, RandomRadius(model, random));
        std::vector<std::int32_t> counts;
        for (std::int32_t row = 0; row < disc.rows; ++row) {
            CountCells(disc, row, counts);
            ASSERT_EQ(counts, CountsByEveryStep(disc, row)) << "seed " << seed << ", row " << row;
        }
        const std::int32_t middle = disc.cols / 2;
        disagreements +=
            counts[static_cast<std::size_t>(middle)] != CellsAround(disc, middle, disc.rows - 1)
                ? 1
                : 0;
    }
    EXPECT_GT(disagreements, 10) << "in some of the cases the lists of the disc should disagree";
}

TEST(SlidingDisc, IsCutWhereItReachesOverTheFirstOrLastRow) {
    ProcessModel model;
    SetUpGrid(model, 9, 9, 1.0f);
    const SlidingDisc disc = SelectSlidingDisc(model.grid, 2.0f);
    for (std::int32_t row = 0; row < 9; ++row) {
        EXPECT_EQ(IsCut(disc, row), row < 2 || row > 6) << row;
    }
}

}  // namespace
}  // namespace zelmo
