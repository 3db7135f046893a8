// The offset engine against its plain version, bit for bit, on random grids.

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

#include "base/lanes.h"
#include "base/row_bands.h"
#include "model/offset/missing_cells.h"
#include "model/offset/nearest_value.h"
#include "model/offset/surface_offset.h"
#include "tests/model/grid_model.h"
#include "tests/plain/surface_offset_plain.h"
#include "tests/support/case_count.h"

namespace zelmo {
namespace {

enum Shape { Flat, Noise, Steps, Trench, Ramp, Spikes, Coarse, Waves, Bowl, ShapeCount };

float HeightOf(Shape shape, float base, float size, std::int32_t col, std::int32_t row,
               TestRandom& random) {
    switch (shape) {
        case Noise:
            return base + size * random.Unit();
        case Steps:
            return base + size * static_cast<float>((col / 3 + row / 4) % 3);
        case Trench:
            return col > 3 && col < 7 && row > 1 ? base : base + size;
        case Ramp:
            return base + size * 0.1f * static_cast<float>(col - row);
        case Spikes:
            return random.Below(6) == 0 ? base + size * 10.0f : base;
        case Coarse:
            // Few heights, in eighths: sums are exact, and 0.0 comes up by itself.
            return static_cast<float>(random.Below(5)) * 0.125f - 0.25f;
        case Waves:
            return base + size * 0.2f * std::sin(0.3f * static_cast<float>(col + 2 * row));
        case Bowl:
            return base + size * 0.002f * static_cast<float>(col * col + (row - 5) * (row - 5));
        default:
            return base;
    }
}

std::vector<float> RandomSurface(const ProcessModel& model, TestRandom& random) {
    const auto shape = static_cast<Shape>(random.Below(ShapeCount));
    const float base = random.Below(3) == 0 ? 0.0f : random.Unit() * 2.0f - 0.5f;
    const float size = random.Below(3) == 0 ? 0.5f : random.Unit() * 4.0f;
    std::vector<float> surface;
    for (std::int32_t row = 0; row < model.grid.rows; ++row) {
        for (std::int32_t col = 0; col < model.grid.columns; ++col) {
            surface.push_back(HeightOf(shape, base, size, col, row, random));
        }
    }
    return surface;
}

/// Numbers that no surface should hold.
void Spoil(std::vector<float>& surface, TestRandom& random) {
    constexpr float odd[] = {std::numeric_limits<float>::quiet_NaN(),
                             std::numeric_limits<float>::infinity(),
                             -std::numeric_limits<float>::infinity(),
                             std::numeric_limits<float>::max(),
                             -1.0e30f,
                             -0.0f,
                             1.0e-40f};
    for (float& height : surface) {
        if (random.Below(12) == 0) {
            height = odd[random.Below(7)];
        }
    }
}

/// Only the offset's own needs: no neighbour table.
void SetUpRandomGrid(ProcessModel& model, TestRandom& random) {
    constexpr float spacings[] = {1.0f, 0.1f, 0.25f, 0.0373f, 12.5f, 3.0e-5f, 1.0e-8f, 2.0e7f};
    const bool isLarge = random.Below(16) == 0;
    const std::uint32_t mostCols = isLarge ? 90 : 20;
    const std::uint32_t mostRows = isLarge ? 40 : 14;
    model.grid.columns = static_cast<std::int32_t>(1 + random.Below(mostCols));
    model.grid.rows = static_cast<std::int32_t>(1 + random.Below(mostRows));
    model.grid.spacing = spacings[random.Below(random.Below(4) == 0 ? 8 : 5)];
}

/// Each case with other lanes and on another number of threads.
void ChooseMachine(std::uint32_t seed) {
    AllowWideLanes(seed % 2 == 0);
    SetRowThreads(static_cast<std::int32_t>(1 + seed / 2 % 3));
}

class SurfaceOffsetAgainstPlain : public testing::Test {
protected:
    void TearDown() override {
        AllowWideLanes(true);
        SetRowThreads(0);
    }
};
using VertexNormalsAgainstPlain = SurfaceOffsetAgainstPlain;

float RandomDistance(const ProcessModel& model, TestRandom& random) {
    switch (random.Below(6)) {
        case 0:
            return 0.25f;
        case 1:
            return -0.25f;
        case 2:
            return 0.0f;
        case 3:
            return -0.5f;
        default:
            return (random.Unit() - 0.5f) * 8.0f * model.grid.spacing;
    }
}

float RandomLateral(TestRandom& random) {
    constexpr float laterals[] = {0.0f, 0.1f, 0.5f, 1.0f, 5.0f};
    const std::uint32_t pick = random.Below(6);
    return pick < 5 ? laterals[pick] : random.Unit() * 5.0f;
}

TEST_F(SurfaceOffsetAgainstPlain, GivesTheSameBits) {
    const std::uint32_t cases = CaseCount(3000);
    for (std::uint32_t seed = 0; seed < cases; ++seed) {
        TestRandom random(seed);
        ChooseMachine(seed);
        ProcessModel model;
        SetUpRandomGrid(model, random);
        BuildNeighbourTable(model.grid.neighbours, model.grid.rows, model.grid.columns,
                            model.grid.spacing);
        std::vector<float> heights = RandomSurface(model, random);
        if (random.Below(4) == 0) {
            Spoil(heights, random);
        }
        const float distance = RandomDistance(model, random);
        const float lateral = RandomLateral(random);

        // What `out` held before does not show.
        std::vector<float> out(model.grid.CellCount(), 77.0f);
        std::vector<float> plain(model.grid.CellCount(), -1.0f);
        OffsetSurface(model.grid, out, heights, distance, lateral);
        OffsetSurfacePlain(model.grid, plain, heights, distance, lateral);
        ASSERT_EQ(BitsOf(out), BitsOf(plain))
            << "seed " << seed << ": " << model.grid.columns << " by " << model.grid.rows
            << ", distance " << distance << ", lateral " << lateral;
    }
}

TEST_F(SurfaceOffsetAgainstPlain, GivesTheSameBitsAtTheLimitsOfItsShortCuts) {
    // As far from the origin, as high and as steep as squares can be of which only the corners, or
    // only the cells near by, are tested; and beyond.
    constexpr std::int32_t sizes[][2] = {{8100, 3}, {3, 8100}, {8400, 2}, {2, 60000}};
    constexpr float slopes[] = {0.5f, 4.5f, 800.0f, 30000.0f};
    for (std::uint32_t seed = 0; seed < 32; ++seed) {
        TestRandom random(seed);
        ChooseMachine(seed);
        ProcessModel model;
        model.grid.columns = sizes[seed % 4][0];
        model.grid.rows = sizes[seed % 4][1];
        model.grid.spacing = 0.0005f + 0.1f * random.Unit();
        const float base = model.grid.spacing * 8180.0f * (random.Unit() - 0.5f) * 2.0f;
        const float steepest = model.grid.spacing * slopes[seed / 4 % 4];
        std::vector<float> heights;
        for (std::size_t cell = 0; cell < model.grid.CellCount(); ++cell) {
            heights.push_back(base + steepest * random.Unit());
        }
        const float distance = (random.Unit() - 0.5f) * model.grid.spacing;
        const float lateral = seed % 2 == 0 ? 0.0f : random.Unit() * 0.3f;
        std::vector<float> out(model.grid.CellCount());
        std::vector<float> plain(model.grid.CellCount());
        OffsetSurface(model.grid, out, heights, distance, lateral);
        OffsetSurfacePlain(model.grid, plain, heights, distance, lateral);
        ASSERT_EQ(BitsOf(out), BitsOf(plain)) << "seed " << seed;
    }
}

TEST_F(SurfaceOffsetAgainstPlain, SurvivesExtremeArguments) {
    constexpr float extremes[] = {std::numeric_limits<float>::quiet_NaN(),
                                  std::numeric_limits<float>::infinity(),
                                  -std::numeric_limits<float>::infinity(),
                                  1.0e38f,
                                  -1.0e20f,
                                  1.0e-42f,
                                  -0.0f};
    TestRandom random(1);
    ProcessModel model;
    SetUpGrid(model, 11, 13, 0.5f);
    std::uint32_t round = 0;
    for (const float distance : extremes) {
        for (const float lateral : {0.0f, 1.0f, 1.0e-40f, 1.0e30f, 3.0e38f}) {
            for (int repeat = 0; repeat < 6; ++repeat) {
                ChooseMachine(round++);
                const std::vector<float> heights = RandomSurface(model, random);
                std::vector<float> out(model.grid.CellCount());
                std::vector<float> plain(model.grid.CellCount());
                OffsetSurface(model.grid, out, heights, distance, lateral);
                OffsetSurfacePlain(model.grid, plain, heights, distance, lateral);
                ASSERT_EQ(BitsOf(out), BitsOf(plain)) << distance << ", " << lateral;
            }
        }
    }
}

TEST_F(VertexNormalsAgainstPlain, GiveTheSameBits) {
    const std::uint32_t cases = CaseCount(500);
    for (std::uint32_t seed = 0; seed < cases; ++seed) {
        TestRandom random(seed);
        ChooseMachine(seed);
        ProcessModel model;
        SetUpRandomGrid(model, random);
        std::vector<float> heights = RandomSurface(model, random);
        if (random.Below(3) == 0) {
            Spoil(heights, random);
        }
        std::vector<float> normals(3 * heights.size(), 5.0f);
        std::vector<float> plain(3 * heights.size(), 6.0f);
        ComputeVertexNormals(model.grid.columns, model.grid.rows, model.grid.spacing, normals,
                             heights);
        ComputeVertexNormalsPlain(model.grid.columns, model.grid.rows, model.grid.spacing, plain,
                                  heights);
        ASSERT_EQ(BitsOf(normals), BitsOf(plain)) << "seed " << seed;
    }
}

TEST(MissingCellsAgainstPlain, AreFilledWithTheSameBits) {
    const std::uint32_t cases = CaseCount(1500);
    for (std::uint32_t seed = 0; seed < cases; ++seed) {
        TestRandom random(seed);
        ProcessModel model;
        SetUpRandomGrid(model, random);
        BuildNeighbourTable(model.grid.neighbours, model.grid.rows, model.grid.columns,
                            model.grid.spacing);
        std::vector<float> raster(model.grid.CellCount(), 0.0f);
        const std::uint32_t rarity = 1 + random.Below(12) * random.Below(12);
        for (float& value : raster) {
            if (random.Below(rarity) == 0) {
                value = random.Unit() - 0.5f;
            } else if (random.Below(40) == 0) {
                value = -0.0f;
            }
        }
        if (random.Below(8) == 0) {
            Spoil(raster, random);
        }
        std::vector<float> out(raster);
        std::vector<float> plain(raster.size(), 6.0f);
        const std::int32_t filled =
            FillMissingCells(model.grid.columns, model.grid.rows, model.grid.spacing, out);
        EXPECT_EQ(filled,
                  FillMissingCellsPlain(model.grid.columns, model.grid.rows, model.grid.spacing,
                                        model.grid.neighbours, plain, raster));
        ASSERT_EQ(BitsOf(out), BitsOf(plain)) << "seed " << seed;
    }
}

/// The first cell with a value on a walk through the neighbour table, or -1.
std::int64_t FirstInTable(const ProcessModel& model, const std::vector<float>& raster,
                          std::int32_t col, std::int32_t row) {
    for (const NeighbourOffset& entry : model.grid.neighbours.entries) {
        const std::int32_t x = col + entry.dx;
        const std::int32_t y = row + entry.dy;
        if (x >= 0 && x < model.grid.columns && y >= 0 && y < model.grid.rows &&
            raster[CellAt(model, x, y)] != 0.0f) {
            return static_cast<std::int64_t>(CellAt(model, x, y));
        }
    }
    return -1;
}

TEST(NearestValue, IsTheFirstOneInTheNeighbourTable) {
    for (std::uint32_t seed = 0; seed < 400; ++seed) {
        TestRandom random(seed);
        ProcessModel model;
        SetUpRandomGrid(model, random);
        BuildNeighbourTable(model.grid.neighbours, model.grid.rows, model.grid.columns,
                            model.grid.spacing);
        std::vector<float> raster(model.grid.CellCount(), 0.0f);
        const std::uint32_t rarity = 1 + random.Below(12) * random.Below(20);
        for (float& value : raster) {
            value = random.Below(rarity) == 0 ? 1.0f : 0.0f;
        }
        const ValuedCells valued = FindValuedCells(model.grid.columns, model.grid.rows, raster);
        for (std::int32_t row = 0; row < model.grid.rows; ++row) {
            for (std::int32_t col = 0; col < model.grid.columns; ++col) {
                ASSERT_EQ(FindNearestValue(valued, model.grid.spacing, col, row),
                          FirstInTable(model, raster, col, row))
                    << "seed " << seed << ", cell " << col << ", " << row;
            }
        }
    }
}

TEST(NearestValue, IsTheLeftOneWhereLengthsRoundToTheSame) {
    // With the smallest float for a pitch every length is a whole number of it.
    constexpr float pitch = std::numeric_limits<float>::denorm_min();
    ProcessModel model;
    SetUpGrid(model, 6, 90, pitch);
    std::vector<float> raster(model.grid.CellCount(), 0.0f);
    for (const std::int32_t col : {0, 2, 3, 5}) {
        raster[CellAt(model, col, 80)] = 1.0f;
        raster[CellAt(model, col, 81)] = 1.0f;
    }
    const ValuedCells valued = FindValuedCells(6, 90, raster);
    for (std::int32_t col = 0; col < 6; ++col) {
        for (const std::int32_t row : {0, 40, 79, 80, 89}) {
            EXPECT_EQ(FindNearestValue(valued, pitch, col, row),
                      FirstInTable(model, raster, col, row));
        }
    }
    EXPECT_EQ(FindNearestValue(valued, pitch, 4, 0),
              static_cast<std::int64_t>(CellAt(model, 0, 80)));
}

}  // namespace
}  // namespace zelmo
