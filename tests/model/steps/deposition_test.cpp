#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

#include "model/cover_map.h"
#include "model/offset/surface_offset.h"
#include "model/steps/steps.h"
#include "tests/model/grid_model.h"

namespace zelmo {
namespace {

ProcessStep DepositionStep(float thickness, float stepCoverage) {
    ProcessStep step;
    step.kind = StepKind::Deposition;
    step.thickness = thickness;
    step.stepCoverage = stepCoverage;
    step.material = "ox";
    step.label = "OXIDE";
    step.color = {0.25f, 0.5f, 0.75f};
    step.alpha = 0.6f;
    return step;
}

/// A layer 0 with these tops in every row, on bottom 0, and its cover map.
void SetUpProfile(ProcessModel& model, std::int32_t rows, float spacing,
                  const std::vector<float>& columns) {
    SetUpGrid(model, static_cast<std::int32_t>(columns.size()), rows, spacing);
    Layer& ground = AppendFlatLayer(model, 0.0f, 1.0f, "_SUB_");
    for (std::size_t cell = 0; cell < model.grid.CellCount(); ++cell) {
        ground.top[cell] = columns[cell % columns.size()];
    }
    UpdateCoverMap(model.stack, model.grid);
}

TEST(Deposition, AddsALayerWithTheStepsProperties) {
    ProcessModel model;
    SetUpProfile(model, 4, 0.5f, {1, 1, 1, 1, 1});
    ExecuteDeposition(model.stack, model.grid, DepositionStep(0.5f, 0.1f));
    ASSERT_EQ(model.stack.layers.size(), 2U);
    const Layer& film = *model.stack.layers[1];
    EXPECT_EQ(film.material, "ox");
    EXPECT_EQ(film.label, "OXIDE");
    EXPECT_EQ(film.color, (std::array<float, 3>{0.25f, 0.5f, 0.75f}));
    EXPECT_EQ(film.alpha, 0.6f);
    EXPECT_FALSE(film.isPhotoresist);
    EXPECT_TRUE(film.changed);
    EXPECT_EQ(film.cols, 5);
    EXPECT_EQ(film.rows, 4);
    EXPECT_EQ(film.spacing, 0.5f);
}

TEST(Deposition, OnAFlatSurfaceHasItsThicknessWhateverTheStepCoverage) {
    for (const float stepCoverage : {0.1f, 0.5f, 1.0f}) {
        ProcessModel model;
        SetUpProfile(model, 6, 0.1f, std::vector<float>(9, 1.25f));
        ExecuteDeposition(model.stack, model.grid, DepositionStep(0.4f, stepCoverage));
        for (std::size_t cell = 0; cell < model.grid.CellCount(); ++cell) {
            EXPECT_EQ(model.stack.layers[1]->bottom[cell], 1.25f);
            EXPECT_NEAR(model.stack.layers[1]->top[cell], 1.65f, 1e-6f);
            EXPECT_EQ(model.stack.coverMap[cell].layerId, 1);
            EXPECT_EQ(model.stack.coverMap[cell].height, model.stack.layers[1]->top[cell]);
        }
    }
}

/// How many cells beside a high step a micrometre of film covers up to half of its height.
int SidewallCells(float stepCoverage) {
    std::vector<float> columns(60, 1.0f);
    for (std::size_t col = 0; col < 20; ++col) {
        columns[col] = 21.0f;
    }
    ProcessModel model;
    SetUpProfile(model, 5, 0.1f, columns);
    ExecuteDeposition(model.stack, model.grid, DepositionStep(1.0f, stepCoverage));
    int covered = 0;
    for (std::int32_t col = 20; col < 60; ++col) {
        covered += model.stack.layers[1]->top[CellAt(model, col, 2)] > 11.0f ? 1 : 0;
    }
    return covered;
}

TEST(Deposition, CoversAStepSidewaysByItsStepCoverage) {
    EXPECT_NEAR(SidewallCells(1.0f), 10, 1);
    EXPECT_NEAR(SidewallCells(0.5f), 5, 1);
    EXPECT_NEAR(SidewallCells(0.1f), 1, 1);
}

TEST(Deposition, ClosesATrenchNarrowerThanTwiceItsLateralGrowth) {
    std::vector<float> columns(31, 5.0f);
    for (std::size_t col = 13; col <= 17; ++col) {
        columns[col] = 1.0f;
    }
    ProcessModel model;
    SetUpProfile(model, 5, 0.1f, columns);
    ExecuteDeposition(model.stack, model.grid, DepositionStep(1.0f, 1.0f));
    for (std::int32_t col = 13; col <= 17; ++col) {
        // Much more than the two micrometres that its floor alone would reach.
        EXPECT_GT(model.stack.layers[1]->top[CellAt(model, col, 2)], 3.0f) << col;
    }
}

TEST(Deposition, FollowsTheOffsetSurfaceOfTheCover) {
    ProcessModel model;
    SetUpProfile(model, 9, 0.2f, {1, 1, 3, 3, 3, 1, 1, 2, 2, 1, 1});
    std::vector<float> heights;
    for (const CoverCell& cell : model.stack.coverMap) {
        heights.push_back(cell.height);
    }
    std::vector<float> offset(model.grid.CellCount());
    OffsetSurface(model.grid, offset, heights, 0.3f, 0.5f);
    ExecuteDeposition(model.stack, model.grid, DepositionStep(0.3f, 0.5f));
    EXPECT_EQ(BitsOf(model.stack.layers[1]->bottom), BitsOf(heights));
    EXPECT_EQ(BitsOf(model.stack.layers[1]->top), BitsOf(offset));
}

TEST(Deposition, HasNoThicknessWhereTheOffsetSurfaceLiesLower) {
    // Beside the step at the right edge the surface moves away to the left, and the cells there are
    // filled by the line through the two before, which leads down.
    ProcessModel model;
    SetUpProfile(model, 5, 1.0f, {1, 1, 1, 8, 2, 9});
    ExecuteDeposition(model.stack, model.grid, DepositionStep(0.5f, 1.0f));
    const Layer& film = *model.stack.layers[1];
    std::vector<float> offset(model.grid.CellCount());
    OffsetSurface(model.grid, offset, film.bottom, 0.5f, 1.0f);
    int lower = 0;
    for (std::size_t cell = 0; cell < offset.size(); ++cell) {
        lower += offset[cell] < film.bottom[cell] ? 1 : 0;
        EXPECT_EQ(film.top[cell],
                  offset[cell] > film.bottom[cell] ? offset[cell] : film.bottom[cell]);
    }
    EXPECT_GT(lower, 0);
}

TEST(Deposition, HasNoThicknessWhereTheOffsetIsNoNumber) {
    // A vertex at infinity spoils the line that the cells at its side are filled with.
    ProcessModel model;
    SetUpGrid(model, 5, 5, 1.0f);
    AppendFlatLayer(model, 0.0f, 1.0f);
    UpdateCoverMap(model.stack, model.grid);
    for (CoverCell& cell : model.stack.coverMap) {
        cell.height = std::numeric_limits<float>::quiet_NaN();
    }
    ExecuteDeposition(model.stack, model.grid, DepositionStep(0.5f, 1.0f));
    // No triangle, hence 0.0 everywhere; and nothing is greater than a NaN.
    EXPECT_EQ(BitsOf(model.stack.layers[1]->top), BitsOf(model.stack.layers[1]->bottom));
}

TEST(Deposition, IsTheCoverBesideItsThicknessToo) {
    ProcessModel model;
    SetUpProfile(model, 5, 1.0f, {1, 1, 1, 8, 2, 9});
    ExecuteDeposition(model.stack, model.grid, DepositionStep(0.5f, 1.0f));
    const Layer& film = *model.stack.layers[1];
    int bare = 0;
    for (std::size_t cell = 0; cell < model.grid.CellCount(); ++cell) {
        if (film.top[cell] == film.bottom[cell]) {
            ++bare;
            EXPECT_EQ(model.stack.coverMap[cell].layerId, 1);
            EXPECT_EQ(model.stack.coverMap[cell].height, film.top[cell]);
        }
    }
    EXPECT_GT(bare, 0);
}

TEST(Deposition, LeavesOtherLayersAlone) {
    ProcessModel model;
    SetUpProfile(model, 4, 0.5f, {1, 2, 1, 1});
    const auto& top = model.stack.layers[0]->top;
    model.stack.layers[0]->changed = false;
    ExecuteDeposition(model.stack, model.grid, DepositionStep(0.5f, 0.3f));
    EXPECT_EQ(model.stack.layers[0]->top, top);
    EXPECT_FALSE(model.stack.layers[0]->changed);
}

TEST(Deposition, StartsFromTheCoverAndNotFromAGapUnderIt) {
    // A film hangs free over a released one.
    ProcessModel model;
    SetUpGrid(model, 5, 5, 1.0f);
    AppendFlatLayer(model, 0.0f, 1.0f, "_SUB_");
    AppendFlatLayer(model, 1.0f, 0.0f, "sacrificial");
    AppendFlatLayer(model, 3.0f, 1.0f, "beam");
    UpdateCoverMap(model.stack, model.grid);
    ExecuteDeposition(model.stack, model.grid, DepositionStep(0.5f, 0.3f));
    EXPECT_EQ(model.stack.layers[3]->bottom, std::vector<float>(25, 4.0f));
}

}  // namespace
}  // namespace zelmo
