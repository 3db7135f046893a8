#include "model/steps/coat_layer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <span>
#include <vector>

#include "model/disc/disc_filter.h"
#include "tests/model/grid_model.h"
#include "tests/plain/disc_filter_plain.h"
#include "tests/support/strange_numbers.h"

namespace zelmo {
namespace {

std::unique_ptr<Layer> NewLayer(const ProcessModel& model) {
    return CreateLayer(model.grid);
}

void RandomCover(ProcessModel& model, TestRandom& random) {
    for (CoverCell& cover : model.stack.coverMap) {
        cover.height = random.Below(3) == 0 ? 1.0f : 1.0f + 2.0f * random.Unit();
    }
}

TEST(CoatLayer, WithoutPlanarisationIsTheSurfaceAndTheThickness) {
    ProcessModel model;
    SetUpGrid(model, 17, 11, 0.13f);
    TestRandom random(8);
    RandomCover(model, random);
    const auto layer = NewLayer(model);
    CoatLayer(model.grid, model.stack.coverMap, *layer, 0.37f, 0.0f);
    for (std::size_t cell = 0; cell < model.grid.CellCount(); ++cell) {
        EXPECT_EQ(layer->bottom[cell], model.stack.coverMap[cell].height);
        EXPECT_NEAR(layer->top[cell], 0.37f + model.stack.coverMap[cell].height, 1e-6f);
    }
}

TEST(CoatLayer, WithoutPlanarisationAFlatFilmIsExact) {
    ProcessModel model;
    SetUpGrid(model, 17, 11, 0.13f);
    for (CoverCell& cover : model.stack.coverMap) {
        cover.height = 4.3f;
    }
    const auto layer = NewLayer(model);
    CoatLayer(model.grid, model.stack.coverMap, *layer, 0.1f, 0.0f);
    EXPECT_EQ(layer->top, std::vector<float>(model.grid.CellCount(), 0.1f + 4.3f));
}

TEST(CoatLayer, FlatSurfaceStaysFlatWhateverTheRadius) {
    ProcessModel model;
    SetUpGrid(model, 40, 30, 0.1f);
    for (CoverCell& cover : model.stack.coverMap) {
        cover.height = 0x1.133334p+2f;
    }
    for (const float thickness : {0.01f, 0.1f, 0.3f, 1.0f, 3.3f}) {
        const auto layer = NewLayer(model);
        CoatLayer(model.grid, model.stack.coverMap, *layer, thickness, 1.0f);
        EXPECT_EQ(layer->top,
                  std::vector<float>(model.grid.CellCount(), thickness + 0x1.133334p+2f));
    }
}

TEST(CoatLayer, RadiusIsRoundedAfterEachProductFromTheLeft) {
    // The grid's pitch is the radius itself or one bit more than it: with any other rounding the
    // four neighbours would be taken in where they are not, or left out where they are in.
    struct Case {
        float thickness;
        float dop;
        float pitch;
        bool takesNeighboursIn;
    };
    for (const Case& c :
         {Case{0.26f, 0.68f, 0x1.8e4b86p-2f, true},  //
          Case{0.26f, 0.68f, 0x1.8e4b88p-2f, false}, Case{2.39f, 0.34f, 0x1.c9a808p+0f, true},
          Case{2.39f, 0.34f, 0x1.c9a80ap+0f, false}, Case{3.92f, 0.87f, 0x1.e02f32p+2f, true},
          Case{3.92f, 0.87f, 0x1.e02f34p+2f, false}}) {
        ProcessModel model;
        SetUpGrid(model, 3, 3, c.pitch);
        model.stack.coverMap[4].height = 1.0f;
        const auto layer = NewLayer(model);
        CoatLayer(model.grid, model.stack.coverMap, *layer, c.thickness, c.dop);
        EXPECT_EQ(layer->top[1] > c.thickness, c.takesNeighboursIn) << c.pitch;
    }
}

TEST(CoatLayer, FillsATrenchAndThinsOverARidge) {
    ProcessModel model;
    SetUpGrid(model, 60, 3, 0.1f);
    for (std::int32_t row = 0; row < 3; ++row) {
        for (std::int32_t col = 0; col < 60; ++col) {
            const bool trench = col >= 18 && col < 22;
            const bool ridge = col >= 38 && col < 42;
            model.stack.coverMap[CellAt(model, col, row)].height = trench  ? 0.5f
                                                                   : ridge ? 1.5f
                                                                           : 1.0f;
        }
    }
    const auto layer = NewLayer(model);
    CoatLayer(model.grid, model.stack.coverMap, *layer, 0.6f, 1.0f);
    EXPECT_GT(layer->top[CellAt(model, 20, 1)], 0.5f + 0.6f + 0.1f);
    EXPECT_LT(layer->top[CellAt(model, 40, 1)], 1.5f + 0.6f - 0.1f);
    EXPECT_GE(layer->top[CellAt(model, 40, 1)], 1.5f);
}

TEST(CoatLayer, NeverDipsUnderTheSurface) {
    ProcessModel model;
    SetUpGrid(model, 25, 25, 0.1f);
    model.stack.coverMap[CellAt(model, 12, 12)].height = 10.0f;
    const auto layer = NewLayer(model);
    CoatLayer(model.grid, model.stack.coverMap, *layer, 0.5f, 1.0f);
    EXPECT_EQ(layer->top[CellAt(model, 12, 12)], 10.0f);
    for (std::size_t cell = 0; cell < model.grid.CellCount(); ++cell) {
        EXPECT_GE(layer->top[cell], layer->bottom[cell]);
    }
}

TEST(SmoothLayerTop, AtTheEdgeTheMeanIsOverTheCellsThatRemain) {
    ProcessModel model;
    SetUpGrid(model, 4, 1, 1.0f);
    const auto layer = NewLayer(model);
    layer->top = {2.0f, 4.0f, 9.0f, 11.0f};
    SmoothLayerTop(model.grid, *layer, 1.0f);
    EXPECT_EQ(layer->top, (std::vector<float>{3.0f, 5.0f, 8.0f, 10.0f}));
}

TEST(SmoothLayerTop, TakesTheWholeDiscIn) {
    ProcessModel model;
    SetUpGrid(model, 3, 3, 1.0f);
    const auto layer = NewLayer(model);
    layer->top = {1.0f, 2.0f, 4.0f, 8.0f, 16.0f, 32.0f, 64.0f, 128.0f, 256.0f};
    SmoothLayerTop(model.grid, *layer, 1.0f);
    EXPECT_EQ(layer->top[4], (2.0f + 8.0f + 16.0f + 32.0f + 128.0f) / 5.0f);
    EXPECT_EQ(layer->top[0], static_cast<float>((1.0 + 2.0 + 8.0) / 3.0));
    EXPECT_EQ(layer->top[5], (4.0f + 16.0f + 32.0f + 256.0f) / 4.0f);
}

TEST(SmoothLayerTop, MeansBelowTheBottomAreRaisedToIt) {
    ProcessModel model;
    SetUpGrid(model, 3, 1, 1.0f);
    const auto layer = NewLayer(model);
    layer->top = {0.0f, 6.0f, 0.0f};
    layer->bottom = {0.0f, 5.0f, 0.0f};
    SmoothLayerTop(model.grid, *layer, 1.0f);
    EXPECT_EQ(layer->top, (std::vector<float>{3.0f, 5.0f, 3.0f}));
}

TEST(SmoothLayerTop, ANaNReachesTheRestOfItsRows) {
    // The sum is carried along the row and never made anew.
    ProcessModel model;
    SetUpGrid(model, 12, 5, 1.0f);
    const auto layer = NewLayer(model);
    layer->top[CellAt(model, 4, 2)] = nan;
    SmoothLayerTop(model.grid, *layer, 1.0f);
    const auto isNaN = [&](std::int32_t col, std::int32_t row) {
        return std::isnan(layer->top[CellAt(model, col, row)]);
    };
    EXPECT_FALSE(isNaN(2, 2));
    EXPECT_TRUE(isNaN(3, 2));
    EXPECT_TRUE(isNaN(11, 2));
    EXPECT_FALSE(isNaN(3, 1));
    EXPECT_TRUE(isNaN(4, 1));
    EXPECT_TRUE(isNaN(11, 1));
    EXPECT_FALSE(isNaN(11, 0));
}

TEST(SmoothLayerTop, TheCarriedSumKeepsItsRoundings) {
    // A large height that enters and leaves the disc takes the small ones' last digits with it.
    ProcessModel model;
    SetUpGrid(model, 40, 1, 1.0f);
    const auto layer = NewLayer(model);
    layer->top.assign(40, 0.1f);
    layer->top[5] = 1e18f;
    SmoothLayerTop(model.grid, *layer, 2.0f);
    double sum = 0.0;
    for (int i = 0; i < 5; ++i) {
        sum += 0.1f;
    }
    EXPECT_NE(layer->top[30], static_cast<float>(sum / 5.0));
}

TEST(SmoothLayerTop, IsNearTheMeanSummedAnew) {
    TestRandom random(10);
    for (int i = 0; i < 20; ++i) {
        ProcessModel model;
        SetUpGrid(model, 30, 20, 0.25f);
        RandomCover(model, random);
        const float radius = std::sqrt(static_cast<float>(random.Below(100)) + 0.5f) * 0.25f;
        const auto sliding = NewLayer(model);
        const auto direct = NewLayer(model);
        for (std::size_t cell = 0; cell < model.grid.CellCount(); ++cell) {
            sliding->top[cell] = direct->top[cell] = model.stack.coverMap[cell].height;
        }
        SmoothLayerTop(model.grid, *sliding, radius);
        SmoothLayerTopDirect(model.grid, *direct, radius);
        for (std::size_t cell = 0; cell < model.grid.CellCount(); ++cell) {
            ASSERT_NEAR(sliding->top[cell], direct->top[cell], 1e-6f);
        }
    }
}

/// Heights of very different size, with a few NaN and infinite ones in some of the runs.
void RandomHeights(std::span<float> heights, TestRandom& random, bool withStrangers) {
    for (float& height : heights) {
        height = std::ldexp(random.Unit() - 0.25f, static_cast<int>(random.Below(40)) - 20);
        if (withStrangers && random.Below(60) == 0) {
            const float strangers[] = {nan, infinity, -infinity, -0.0f, 3.4e38f, 1e-45f};
            height = strangers[random.Below(6)];
        }
    }
}

TEST(SmoothLayerTop, IsTheSameAsWithEveryBoundTested) {
    TestRandom random(11);
    for (int i = 0; i < 300; ++i) {
        ProcessModel model;
        const std::int32_t cols = i % 11 == 0 ? 1 : 1 + static_cast<std::int32_t>(random.Below(30));
        const std::int32_t rows = i % 7 == 0 ? 1 : 1 + static_cast<std::int32_t>(random.Below(30));
        SetUpGrid(model, cols, rows, 0.01f + random.Unit());
        const auto layer = NewLayer(model);
        RandomHeights(layer->top, random, i % 3 == 0);
        RandomHeights(layer->bottom, random, i % 3 == 0);
        const auto plain = NewLayer(model);
        plain->top = layer->top;
        plain->bottom = layer->bottom;

        const NeighbourOffset& entry =
            model.grid.neighbours
                .entries[random.Below(static_cast<std::uint32_t>(model.grid.neighbours.count))];
        const float radii[] = {0.0f, entry.distance, 8.0f * random.Unit(), infinity, nan, -1.0f};
        const float radius = radii[i % 10 < 5 ? 1 : random.Below(6)];
        SmoothLayerTop(model.grid, *layer, radius);
        SmoothLayerTopPlain(model.grid, *plain, radius);
        ASSERT_EQ(BitsOf(layer->top), BitsOf(plain->top))
            << cols << " x " << rows << ", " << radius;
    }
}

}  // namespace
}  // namespace zelmo
