#include "results/models/stack_model.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

#include "base/row_bands.h"
#include "tests/results/models/solid_checks.h"
#include "tests/results/random_stack.h"

namespace zelmo {
namespace {

/// The layer of the stack that a solid was made of.
const Layer& LayerOf(const ProcessModel& model, const LayerModel& solid) {
    return *model.stack.layers[static_cast<std::size_t>(solid.facts.number) - 1];
}

/// All that a model promises; `isClean` is slow.
void CheckSolids(const ProcessModel& model, double tolerance, bool isClean) {
    const StackModel solids = MakeStackModel(model, {tolerance});
    ASSERT_EQ(solids.failure, "");
    for (const LayerModel& solid : solids.layers) {
        const Layer& layer = LayerOf(model, solid);
        ASSERT_EQ(WhyNotClosed(solid), "");
        ASSERT_EQ(WhyNotClosedByPosition(solid), "");
        if (isClean) {
            ASSERT_EQ(WhyNotClean(solid), "");
        }
        ASSERT_EQ(WhyMoved(solid, layer, model, tolerance), "");
        const double volume = DrawnVolume(layer, model);
        ASSERT_NEAR(VolumeOf(solid), volume,
                    ModelAccuracy{tolerance}.VolumeShare() * std::abs(volume) + 1e-9);
    }
}

/// A window without margins on a grid of this size.
std::unique_ptr<ProcessModel> MakeEmptyStack(std::int32_t cols, std::int32_t rows, float spacing) {
    auto model = std::make_unique<ProcessModel>();
    SetUpGrid(*model, cols, rows, spacing);
    return model;
}

/// Layers of few levels, with parts that only touch each other.
std::unique_ptr<ProcessModel> MakeBlockyStack(std::uint32_t seed) {
    TestRandom random(seed);
    auto model = MakeEmptyStack(static_cast<std::int32_t>(2 + random.Below(14)),
                                static_cast<std::int32_t>(2 + random.Below(14)), 0.25f);
    for (int i = 0; i < 2; ++i) {
        auto layer = CreateLayer(model->grid);
        const std::uint32_t levels = 1 + random.Below(2);
        const std::uint32_t thicknesses = 2 + random.Below(2);
        const std::uint32_t size = 1 + random.Below(4);
        const std::uint32_t shift = random.Bits();
        for (std::int32_t row = 0; row < model->grid.rows; ++row) {
            for (std::int32_t col = 0; col < model->grid.columns; ++col) {
                const std::size_t cell = CellAt(*model, col, row);
                TestRandom piece(shift + static_cast<std::uint32_t>(col) / size * 977 +
                                 static_cast<std::uint32_t>(row) / size);
                layer->bottom[cell] = 0.5f * static_cast<float>(piece.Below(levels));
                layer->top[cell] =
                    layer->bottom[cell] + 0.5f * static_cast<float>(piece.Below(thicknesses));
            }
        }
        AppendLayer(model->stack, std::move(layer));
    }
    return model;
}

/// A layer between two gently curved surfaces, with a flat part and rounding noise.
std::unique_ptr<ProcessModel> MakeCurvedStack(std::uint32_t seed) {
    TestRandom random(seed);
    auto model = MakeEmptyStack(90, 70, 0.01f);
    auto layer = CreateLayer(model->grid);
    const float bend = 3e-5f * random.Unit();
    for (std::int32_t row = 0; row < model->grid.rows; ++row) {
        for (std::int32_t col = 0; col < model->grid.columns; ++col) {
            const std::size_t cell = CellAt(*model, col, row);
            const auto x = static_cast<float>(std::max(col - 40, 0));
            const auto y = static_cast<float>(row - 35);
            layer->bottom[cell] = 1.0f - 0.1f * bend * y * y;
            const bool isHole = col < 20 && row < 30 && col + row < 33;
            layer->top[cell] = isHole
                                   ? layer->bottom[cell]
                                   : 1.5f + bend * (x * x + 0.3f * x * y) + 1e-7f * random.Unit();
        }
    }
    AppendLayer(model->stack, std::move(layer));
    return model;
}

TEST(StackModel, IsClosedAndTheDrawnSolidOnRandomStacks) {
    for (std::uint32_t seed = 1; seed < 60; ++seed) {
        SCOPED_TRACE(seed);
        CheckSolids(*MakeRandomStack(seed), 0.1, seed % 8 == 0);
        if (HasFatalFailure()) {
            return;
        }
    }
}

TEST(StackModel, IsClosedWhereLayersTouchThemselves) {
    for (std::uint32_t seed = 1; seed < 1200; ++seed) {
        SCOPED_TRACE(seed);
        CheckSolids(*MakeBlockyStack(seed), 0.1, true);
        if (HasFatalFailure()) {
            return;
        }
    }
}

TEST(StackModel, MovesNothingByMoreThanTheTolerance) {
    for (std::uint32_t seed = 1; seed < 6; ++seed) {
        for (const double tolerance : {0.0, 0.1, 2.0, 30.0}) {
            SCOPED_TRACE(testing::Message() << "seed " << seed << ", " << tolerance << " nm");
            CheckSolids(*MakeCurvedStack(seed), tolerance, false);
            if (HasFatalFailure()) {
                return;
            }
        }
    }
}

TEST(StackModel, HasFewerTrianglesTheMoreMayBeMoved) {
    const auto model = MakeCurvedStack(3);
    std::size_t before = std::numeric_limits<std::size_t>::max();
    for (const double tolerance : {0.0, 0.1, 2.0}) {
        const StackModel solids = MakeStackModel(*model, {tolerance});
        ASSERT_EQ(solids.layers.size(), 1u);
        EXPECT_LT(solids.layers[0].triangles.size(), before);
        before = solids.layers[0].triangles.size();
    }
}

TEST(StackModel, HasTwelveTrianglesForAFlatFilm) {
    const auto model = MakeEmptyStack(300, 200, 0.01f);
    AppendFlatLayer(*model, 0.25f, 0.003f);
    const StackModel solids = MakeStackModel(*model, {});
    ASSERT_EQ(solids.layers.size(), 1u);
    EXPECT_EQ(solids.layers[0].triangles.size(), 12u);
    EXPECT_EQ(solids.layers[0].vertices.size(), 8u);
    EXPECT_NEAR(VolumeOf(solids.layers[0]), 2.99 * 1.99 * 0.003, 1e-7);
}

TEST(StackModel, HasTwoSolidsThatShareNoVertexWhereTwoIslandsMeetInAnEdge) {
    const auto model = MakeEmptyStack(7, 5, 1.0f);
    Layer& layer = AppendFlatLayer(*model, 0.0f, 0.0f);
    for (const std::int32_t col : {2, 4}) {
        for (std::int32_t row = 0; row < 5; ++row) {
            layer.top[CellAt(*model, col, row)] = 1.0f;
        }
    }
    const StackModel solids = MakeStackModel(*model, {});
    ASSERT_EQ(solids.layers.size(), 1u);
    const LayerModel& solid = solids.layers[0];
    EXPECT_EQ(WhyNotClosed(solid), "");
    // Two ridges of six corners each
    EXPECT_EQ(solid.vertices.size(), 12u);
    EXPECT_EQ(solid.triangles.size(), 16u);
    EXPECT_EQ(VolumeOf(solid), 8.0);
}

TEST(StackModel, LeavesOutLayersThatDoNotShowAndKeepsNamesAndColours) {
    const auto model = MakeEmptyStack(8, 8, 0.5f);
    AppendFlatLayer(*model, 0.0f, 1.0f).label = "Lower";
    AppendFlatLayer(*model, 1.0f, 0.0f).label = "Nothing";
    AppendLayer(model->stack, nullptr);
    Layer& upper = AppendFlatLayer(*model, 1.0f, 1.0f);
    upper.label = "Upper";
    upper.color = {0.25f, 0.5f, 1.0f};
    upper.alpha = 0.5f;
    const StackModel solids = MakeStackModel(*model, {});
    ASSERT_EQ(solids.layers.size(), 2u);
    EXPECT_EQ(solids.layers[0].facts.label, "Lower");
    EXPECT_EQ(solids.layers[1].facts.label, "Upper");
    EXPECT_EQ(solids.layers[1].facts.number, 4);
    EXPECT_EQ(solids.layers[1].facts.alpha, 0.5f);
}

TEST(StackModel, LiesInTheWindow) {
    const auto model = MakeRandomStack(5);
    const StackModel solids = MakeStackModel(*model, {});
    ASSERT_FALSE(solids.layers.empty());
    const LayerModel& substrate = solids.layers[0];
    float right = 0.0f;
    float back = 0.0f;
    for (const auto& [x, y, z] : substrate.vertices) {
        EXPECT_GT(x, -model->grid.spacing);
        EXPECT_GT(y, -model->grid.spacing);
        right = std::max(right, x);
        back = std::max(back, y);
    }
    EXPECT_NEAR(right, model->settings.windowWidth, model->grid.spacing);
    EXPECT_NEAR(back, model->settings.windowHeight, model->grid.spacing);
}

TEST(StackModel, RefusesHeightsThatAreNoNumbers) {
    const auto model = MakeEmptyStack(8, 8, 0.5f);
    Layer& layer = AppendFlatLayer(*model, 0.0f, 1.0f);
    layer.label = "Odd";
    layer.top[20] = std::numeric_limits<float>::quiet_NaN();
    const StackModel solids = MakeStackModel(*model, {});
    EXPECT_TRUE(solids.layers.empty());
    EXPECT_EQ(solids.failure, "the surfaces of layer 1 \"Odd\" are no numbers at some places");
}

TEST(StackModel, IsClosedWhereTheTopIsBelowTheBottom) {
    TestRandom random(9);
    const auto model = MakeEmptyStack(20, 15, 0.5f);
    Layer& layer = AppendFlatLayer(*model, 1.0f, 0.0f);
    for (std::size_t cell = 0; cell < layer.top.size(); ++cell) {
        layer.top[cell] = 1.0f + 0.5f * (static_cast<float>(random.Below(3)) - 1.0f);
    }
    const StackModel solids = MakeStackModel(*model, {});
    ASSERT_EQ(solids.layers.size(), 1u);
    EXPECT_EQ(WhyNotClosed(solids.layers[0]), "");
    EXPECT_NEAR(VolumeOf(solids.layers[0]), DrawnVolume(layer, *model), 1e-9);
}

TEST(StackModel, HasNoLayersWhereTheWindowIsOneCellWide) {
    const auto model = MakeEmptyStack(9, 1, 0.5f);
    AppendFlatLayer(*model, 0.0f, 1.0f);
    const StackModel solids = MakeStackModel(*model, {});
    EXPECT_TRUE(solids.layers.empty());
    EXPECT_EQ(solids.failure, "");
}

TEST(StackModel, DoesNotDependOnTheNumberOfThreads) {
    const auto model = MakeRandomStack(12);
    SetRowThreads(1);
    const StackModel one = MakeStackModel(*model, {});
    SetRowThreads(4);
    const StackModel four = MakeStackModel(*model, {});
    SetRowThreads(0);
    ASSERT_EQ(one.layers.size(), four.layers.size());
    for (std::size_t i = 0; i < one.layers.size(); ++i) {
        EXPECT_EQ(one.layers[i].vertices, four.layers[i].vertices);
        EXPECT_EQ(one.layers[i].triangles, four.layers[i].triangles);
    }
}

}  // namespace
}  // namespace zelmo
