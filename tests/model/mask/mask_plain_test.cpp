// The mask kernels against their plain versions, bit for bit, on random grids.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

#include "base/lanes.h"
#include "base/row_bands.h"
#include "model/mask/distance_transform.h"
#include "model/mask/mask.h"
#include "tests/model/grid_model.h"
#include "tests/model/mask/made_polygons.h"
#include "tests/plain/mask_plain.h"
#include "tests/support/case_count.h"
#include "tests/support/strange_numbers.h"

namespace zelmo {
namespace {

void SetUpRandomGrid(ProcessModel& model, TestRandom& random) {
    // With the last three, whole numbers of cells do not divide back to themselves.
    constexpr float spacings[] = {1.0f, 0.1f, 12.5f, 1.0f / 3.0f, 0.013f, 0.091f, 0.018f};
    const auto cols = static_cast<std::int32_t>(1 + random.Below(random.Below(4) == 0 ? 40 : 16));
    const auto rows = static_cast<std::int32_t>(1 + random.Below(static_cast<std::uint32_t>(cols)));
    SetUpGrid(model, cols, rows, spacings[random.Below(7)]);
}

/// A coordinate in or around the grid, often on a grid line or halfway between two.
double RandomCoordinate(TestRandom& random, std::int32_t cells, float spacing) {
    const float span = static_cast<float>(cells + 6);
    float position = random.Unit() * span - 3.0f;
    if (random.Below(2) == 0) {
        position =
            static_cast<float>(random.Below(static_cast<std::uint32_t>(2 * cells + 8))) / 2.0f -
            2.0f;
    }
    return static_cast<double>(position * spacing);
}

MaskPolygon RandomPolygon(const ProcessModel& model, TestRandom& random) {
    MaskPolygon polygon;
    polygon.layer = random.Below(3);
    polygon.datatype = random.Below(3);
    const std::uint32_t count = 1 + random.Below(9);
    for (std::uint32_t i = 0; i < count; ++i) {
        MaskPoint point{RandomCoordinate(random, model.grid.columns, model.grid.spacing),
                        RandomCoordinate(random, model.grid.rows, model.grid.spacing)};
        if (!polygon.points.empty() && random.Below(2) == 0) {
            // Upright and level edges, as layouts have them.
            (random.Below(2) == 0 ? point.x : point.y) =
                random.Below(2) == 0 ? polygon.points.back().x : polygon.points.back().y;
        }
        polygon.points.push_back(point);
    }
    polygon.minX = polygon.maxX = polygon.points[0].x;
    polygon.minY = polygon.maxY = polygon.points[0].y;
    for (const MaskPoint& point : polygon.points) {
        polygon.minX = std::min(polygon.minX, point.x);
        polygon.maxX = std::max(polygon.maxX, point.x);
        polygon.minY = std::min(polygon.minY, point.y);
        polygon.maxY = std::max(polygon.maxY, point.y);
    }
    return polygon;
}

/// No layer up to three, with and without a datatype, at times the same one again.
std::vector<MaskLayer> RandomLayers(TestRandom& random) {
    std::vector<MaskLayer> layers(random.Below(4));
    for (MaskLayer& layer : layers) {
        layer.layer = random.Below(3);
        if (random.Below(2) == 0) {
            layer.datatype = random.Below(3);
        }
    }
    return layers;
}

std::vector<std::uint8_t> RandomMask(const ProcessModel& model, TestRandom& random) {
    std::vector<std::uint8_t> mask(model.grid.CellCount(), 1);
    const std::uint32_t rarity = 1 + random.Below(30) * random.Below(8);
    for (std::uint8_t& cell : mask) {
        if (random.Below(rarity) == 0) {
            cell = 0;
        }
    }
    return mask;
}

TEST(MaskRasterAgainstPlain, SetsTheSameCells) {
    for (std::uint32_t seed = 0; seed < CaseCount(2000); ++seed) {
        TestRandom random(seed);
        ProcessModel model;
        SetUpRandomGrid(model, random);
        const std::uint32_t count = random.Below(6);
        for (std::uint32_t i = 0; i < count; ++i) {
            model.polygons.push_back(RandomPolygon(model, random));
        }
        const std::vector<MaskLayer> layers = RandomLayers(random);
        const bool maskDark = random.Below(2) == 0;
        std::vector<std::uint8_t> mask(model.grid.CellCount(), 7);
        std::vector<std::uint8_t> plain(model.grid.CellCount(), 9);
        const double smallest = RasteriseMask(model.grid, model.polygons, mask, layers, maskDark);
        EXPECT_EQ(smallest, RasteriseMaskPlain(model.grid, model.polygons, plain, layers, maskDark))
            << "seed " << seed;
        ASSERT_EQ(mask, plain) << "seed " << seed;
    }
}

TEST(MaskRasterAgainstPlain, SurvivesImpossiblePolygons) {
    constexpr double odd[] = {nan, infinity, -infinity, 1.0e300, -1.0e300, 3.0e9, -3.0e9};
    for (std::uint32_t seed = 0; seed < CaseCount(1000); ++seed) {
        TestRandom random(seed);
        ProcessModel model;
        SetUpRandomGrid(model, random);
        MaskPolygon polygon = RandomPolygon(model, random);
        polygon.layer = 1;
        polygon.points[random.Below(static_cast<std::uint32_t>(polygon.points.size()))].x =
            odd[random.Below(7)];
        polygon.points[random.Below(static_cast<std::uint32_t>(polygon.points.size()))].y =
            odd[random.Below(7)];
        if (random.Below(2) == 0) {
            double* const box[] = {&polygon.minX, &polygon.minY, &polygon.maxX, &polygon.maxY};
            *box[random.Below(4)] = odd[random.Below(7)];
        }
        model.polygons.push_back(polygon);
        std::vector<std::uint8_t> mask(model.grid.CellCount());
        std::vector<std::uint8_t> plain(model.grid.CellCount());
        const double smallest = RasteriseMask(model.grid, model.polygons, mask, maskOne, true);
        EXPECT_EQ(smallest, RasteriseMaskPlain(model.grid, model.polygons, plain, maskOne, true))
            << "seed " << seed;
        ASSERT_EQ(mask, plain) << "seed " << seed;
    }
}

TEST(PointInPolygonAgainstPlain, GivesTheSameAnswer) {
    int insideCount = 0;
    for (std::uint32_t seed = 0; seed < 20000; ++seed) {
        TestRandom random(seed);
        ProcessModel model;
        model.grid.columns = 8;
        model.grid.rows = 8;
        model.grid.spacing = 0.5f;
        const MaskPolygon polygon = RandomPolygon(model, random);
        const double x = RandomCoordinate(random, 8, 0.5f);
        const double y = RandomCoordinate(random, 8, 0.5f);
        const bool inside = PointInPolygon(polygon, x, y);
        ASSERT_EQ(inside, PointInPolygonPlain(polygon, x, y)) << "seed " << seed;
        insideCount += inside ? 1 : 0;
    }
    EXPECT_GT(insideCount, 1000);
}

/// Compares edge distances with all widths of lanes and 1 to 3 threads. Returns the number of cells
/// whose search misses the nearest free cell.
std::size_t CompareEdgeDistances(const ProcessModel& model, const std::vector<std::uint8_t>& mask) {
    std::vector<float> plain(model.grid.CellCount(), -2.0f);
    MaskEdgeDistancePlain(model.grid, plain, mask);
    for (const bool wide : {false, true}) {
        AllowWideLanes(wide);
        for (std::int32_t threads = 1; threads <= 3; ++threads) {
            SetRowThreads(threads);
            std::vector<float> distance(model.grid.CellCount(), -1.0f);
            MaskEdgeDistance(model.grid, distance, mask);
            EXPECT_EQ(BitsOf(distance), BitsOf(plain)) << "wide " << wide << " threads " << threads;
        }
    }
    SetRowThreads(0);

    std::vector<std::int32_t> squared(model.grid.CellCount());
    if (!SquaredDistanceTransform(squared, mask, model.grid.columns, model.grid.rows)) {
        return 0;
    }
    std::size_t missed = 0;
    for (std::size_t cell = 0; cell < squared.size(); ++cell) {
        const float nearest = std::sqrt(static_cast<float>(squared[cell])) * model.grid.spacing;
        missed += plain[cell] > nearest ? 1 : 0;
    }
    return missed;
}

TEST(MaskEdgeDistanceAgainstPlain, GivesTheSameBits) {
    for (std::uint32_t seed = 0; seed < CaseCount(1500); ++seed) {
        TestRandom random(seed);
        ProcessModel model;
        SetUpRandomGrid(model, random);
        CompareEdgeDistances(model, RandomMask(model, random));
        ASSERT_FALSE(HasFailure()) << "seed " << seed;
    }
}

TEST(MaskEdgeDistanceAgainstPlain, GivesTheSameBitsAtAnyPitch) {
    std::size_t missed = 0;
    for (std::uint32_t seed = 0; seed < CaseCount(300); ++seed) {
        TestRandom random(seed);
        ProcessModel model;
        const auto cols = static_cast<std::int32_t>(1 + random.Below(70));
        const auto rows =
            static_cast<std::int32_t>(1 + random.Below(static_cast<std::uint32_t>(cols)));
        SetUpGrid(model, cols, rows, 0.001f + random.Unit() * 0.1f);
        std::vector<std::uint8_t> mask(model.grid.CellCount(), 1);
        for (std::uint32_t openings = random.Below(4); openings > 0; --openings) {
            mask[random.Below(static_cast<std::uint32_t>(mask.size()))] = 0;
        }
        missed += CompareEdgeDistances(model, mask);
        ASSERT_FALSE(HasFailure()) << "seed " << seed;
    }
    EXPECT_GT(missed, 100U);
}

TEST(MaskEdgeDistanceAgainstPlain, GivesTheSameBitsAtTheEndsOfTheFloatRange) {
    constexpr float spacings[] = {1.0e-45f, 3.0e-45f, 1.0e-41f, 1.2e-38f, 1.0e37f, 3.0e38f};
    for (std::uint32_t seed = 0; seed < CaseCount(300); ++seed) {
        TestRandom random(seed);
        ProcessModel model;
        const auto cols = static_cast<std::int32_t>(1 + random.Below(24));
        SetUpGrid(model, cols,
                  static_cast<std::int32_t>(1 + random.Below(static_cast<std::uint32_t>(cols))),
                  spacings[random.Below(6)]);
        CompareEdgeDistances(model, RandomMask(model, random));
        ASSERT_FALSE(HasFailure()) << "seed " << seed;
    }
}

TEST(SquaredDistanceTransform, IsExact) {
    for (std::uint32_t seed = 0; seed < CaseCount(1500); ++seed) {
        TestRandom random(seed);
        const auto cols = static_cast<std::int32_t>(1 + random.Below(40));
        const auto rows = static_cast<std::int32_t>(1 + random.Below(30));
        std::vector<std::uint8_t> mask(static_cast<std::size_t>(cols * rows), 1);
        std::vector<std::int32_t> free;
        for (std::int32_t cell = 0; cell < cols * rows; ++cell) {
            if (random.Below(1 + seed % 90) == 0) {
                mask[static_cast<std::size_t>(cell)] = 0;
                free.push_back(cell);
            }
        }
        std::vector<std::int32_t> squared(mask.size(), -1);
        ASSERT_EQ(SquaredDistanceTransform(squared, mask, cols, rows), !free.empty());
        for (std::int32_t cell = 0; cell < cols * rows && !free.empty(); ++cell) {
            std::int32_t least = std::numeric_limits<std::int32_t>::max();
            for (const std::int32_t other : free) {
                const std::int32_t dx = cell % cols - other % cols;
                const std::int32_t dy = cell / cols - other / cols;
                least = std::min(least, dx * dx + dy * dy);
            }
            ASSERT_EQ(squared[static_cast<std::size_t>(cell)], least) << "seed " << seed;
        }
    }
}

TEST(MaskEdgeDistanceAgainstPlain, GivesTheSameBitsOnGridsThatAreSharedOut) {
    for (std::uint32_t seed = 0; seed < 12; ++seed) {
        TestRandom random(seed);
        ProcessModel model;
        SetUpGrid(model, 200 + static_cast<std::int32_t>(random.Below(30)), 195,
                  0.01f + random.Unit() * 0.1f);
        std::vector<std::uint8_t> mask(model.grid.CellCount(), 1);
        for (std::uint8_t& cell : mask) {
            cell = random.Below(400) != 0 ? 1 : 0;
        }
        CompareEdgeDistances(model, mask);
        ASSERT_FALSE(HasFailure()) << "seed " << seed;
    }
}

/// A walk through the table from its start would look at a million entries for each of the cells.
TEST(MaskEdgeDistance, OfALargeMaskWithOneOpeningTakesNoLongWalks) {
    ProcessModel model;
    SetUpGrid(model, 900, 900, 0.013f);
    std::vector<std::uint8_t> mask(model.grid.CellCount(), 1);
    mask[CellAt(model, 899, 400)] = 0;
    std::vector<float> distance(model.grid.CellCount());
    const auto start = std::chrono::steady_clock::now();
    MaskEdgeDistance(model.grid, distance, mask);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(3));
    EXPECT_EQ(distance[CellAt(model, 899, 390)], 10.0f * 0.013f);
}

}  // namespace
}  // namespace zelmo
