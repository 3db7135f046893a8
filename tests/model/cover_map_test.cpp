#include "model/cover_map.h"

#include <gtest/gtest.h>

#include "base/lanes.h"
#include "base/row_bands.h"
#include "tests/model/grid_model.h"
#include "tests/plain/cover_map_plain.h"
#include "tests/support/case_count.h"
#include "tests/support/strange_numbers.h"

namespace zelmo {
namespace {

/// A layer on height 1 that is 2 thick at one cell and has no thickness elsewhere.
Layer& AppendBump(ProcessModel& model, std::int32_t col, std::int32_t row) {
    Layer& layer = AppendFlatLayer(model, 1.0f, 0.0f);
    layer.top[CellAt(model, col, row)] = 3.0f;
    return layer;
}

TEST(CoverMap, WithoutLayersCellsStayAsTheyWere) {
    ProcessModel model;
    SetUpGrid(model, 4, 3, 1.0f);
    model.stack.coverMap[5] = {7, 2.5f};
    const auto before = BitsOf(model.stack.coverMap);
    UpdateCoverMap(model.stack, model.grid);
    EXPECT_EQ(BitsOf(model.stack.coverMap), before);
}

TEST(CoverMap, WithoutColumnsNothingIsTouched) {
    ProcessModel model;
    model.grid.rows = 3;
    AppendFlatLayer(model, 0.0f, 1.0f);
    UpdateCoverMap(model.stack, model.grid);
    EXPECT_TRUE(model.stack.coverMap.empty());
}

TEST(CoverMap, CellsThatNoLayerCoversStayAsTheyWere) {
    ProcessModel model;
    SetUpGrid(model, 5, 1, 1.0f);
    model.stack.coverMap.assign(5, {9, 4.0f});
    AppendBump(model, 0, 0);
    UpdateCoverMap(model.stack, model.grid);
    EXPECT_EQ(model.stack.coverMap[0].layerId, 0);
    EXPECT_EQ(model.stack.coverMap[0].height, 3.0f);
    EXPECT_EQ(model.stack.coverMap[1].layerId, 0);
    EXPECT_EQ(model.stack.coverMap[1].height, 1.0f);
    for (std::size_t cell = 2; cell < 5; ++cell) {
        EXPECT_EQ(model.stack.coverMap[cell].layerId, 9);
        EXPECT_EQ(model.stack.coverMap[cell].height, 4.0f);
    }
}

TEST(CoverMap, TheTopmostLayerWins) {
    ProcessModel model;
    SetUpGrid(model, 3, 3, 1.0f);
    AppendFlatLayer(model, 0.0f, 5.0f);
    AppendFlatLayer(model, 1.0f, 2.0f);
    UpdateCoverMap(model.stack, model.grid);
    for (const CoverCell& cover : model.stack.coverMap) {
        EXPECT_EQ(cover.layerId, 1);
        EXPECT_EQ(cover.height, 3.0f) << "also where a lower layer stands higher";
    }
}

TEST(CoverMap, ALayerCoversTheCellsAroundItsThicknessAtTheirOwnHeight) {
    ProcessModel model;
    SetUpGrid(model, 7, 7, 1.0f);
    AppendFlatLayer(model, 0.0f, 1.0f);
    AppendBump(model, 3, 3);
    UpdateCoverMap(model.stack, model.grid);
    for (std::int32_t row = 0; row < 7; ++row) {
        for (std::int32_t col = 0; col < 7; ++col) {
            const bool near = std::abs(col - 3) <= 1 && std::abs(row - 3) <= 1;
            const CoverCell& cover = model.stack.coverMap[CellAt(model, col, row)];
            EXPECT_EQ(cover.layerId, near ? 1 : 0) << col << ", " << row;
            EXPECT_EQ(cover.height, col == 3 && row == 3 ? 3.0f : 1.0f) << col << ", " << row;
        }
    }
}

TEST(CoverMap, ALayerThatCoversNothingAroundShowsAtItsOwnCellsOnly) {
    ProcessModel model;
    SetUpGrid(model, 70, 7, 1.0f);
    AppendFlatLayer(model, 0.0f, 1.0f);
    Layer& bump = AppendBump(model, 64, 3);
    bump.coversAround = false;
    UpdateCoverMap(model.stack, model.grid);
    for (std::int32_t row = 0; row < 7; ++row) {
        for (std::int32_t col = 0; col < 70; ++col) {
            const bool own = col == 64 && row == 3;
            const CoverCell& cover = model.stack.coverMap[CellAt(model, col, row)];
            EXPECT_EQ(cover.layerId, own ? 1 : 0) << col << ", " << row;
            EXPECT_EQ(cover.height, own ? 3.0f : 1.0f) << col << ", " << row;
        }
    }
}

TEST(CoverMap, TheEdgeOfTheGridDoesNotWrapAround) {
    ProcessModel model;
    SetUpGrid(model, 4, 4, 1.0f);
    AppendFlatLayer(model, 0.0f, 1.0f);
    AppendBump(model, 3, 1);
    UpdateCoverMap(model.stack, model.grid);
    for (std::int32_t row = 0; row < 4; ++row) {
        EXPECT_EQ(model.stack.coverMap[CellAt(model, 0, row)].layerId, 0) << row;
    }
    EXPECT_EQ(model.stack.coverMap[CellAt(model, 2, 2)].layerId, 1);
}

TEST(CoverMap, EmptySlotsAreSkippedAndKeepTheirNumber) {
    ProcessModel model;
    SetUpGrid(model, 2, 2, 1.0f);
    AppendFlatLayer(model, 0.0f, 1.0f);
    AppendFlatLayer(model, 1.0f, 1.0f);
    AppendFlatLayer(model, 2.0f, 1.0f);
    AppendFlatLayer(model, 3.0f, 1.0f);
    model.stack.layers[1].reset();
    model.stack.layers[3].reset();
    UpdateCoverMap(model.stack, model.grid);
    EXPECT_EQ(model.stack.coverMap[0].layerId, 2);
    model.stack.layers[2].reset();
    UpdateCoverMap(model.stack, model.grid);
    EXPECT_EQ(model.stack.coverMap[0].layerId, 0);
    EXPECT_EQ(model.stack.coverMap[0].height, 1.0f);
}

TEST(CoverMap, ANaNCountsAsThickness) {
    ProcessModel model;
    SetUpGrid(model, 3, 1, 1.0f);
    AppendFlatLayer(model, 0.0f, 1.0f);
    Layer& film = AppendFlatLayer(model, 1.0f, 0.0f);
    film.top[0] = nan;
    UpdateCoverMap(model.stack, model.grid);
    EXPECT_EQ(model.stack.coverMap[0].layerId, 1);
    EXPECT_NE(model.stack.coverMap[0].height, model.stack.coverMap[0].height);
    EXPECT_EQ(model.stack.coverMap[1].layerId, 1);
    EXPECT_EQ(model.stack.coverMap[1].height, 1.0f);
    EXPECT_EQ(model.stack.coverMap[2].layerId, 0);
}

TEST(CoverMap, InfiniteHeightsHaveThicknessAlsoWhereTheyAreEqual) {
    // The difference of two infinities is no number.
    ProcessModel model;
    SetUpGrid(model, 1, 1, 1.0f);
    AppendFlatLayer(model, 0.0f, 1.0f);
    AppendFlatLayer(model, infinity, 0.0f);
    UpdateCoverMap(model.stack, model.grid);
    EXPECT_EQ(model.stack.coverMap[0].layerId, 1);
}

TEST(CoverMap, TheSmallestDifferenceIsThickness) {
    ProcessModel model;
    SetUpGrid(model, 1, 1, 1.0f);
    AppendFlatLayer(model, 0.0f, 1.0f);
    AppendFlatLayer(model, 1e-38f, 1e-45f);
    UpdateCoverMap(model.stack, model.grid);
    EXPECT_EQ(model.stack.coverMap[0].layerId, 1);
}

/// Layers with holes, NaN and infinite heights, and empty slots between them.
void AppendRandomLayers(ProcessModel& model, TestRandom& random) {
    const std::uint32_t thickIn = 1 + random.Below(30);
    const std::uint32_t slots = random.Below(6);
    for (std::uint32_t slot = 0; slot < slots; ++slot) {
        Layer& layer = AppendFlatLayer(model, 0.0f, 0.0f);
        for (std::size_t cell = 0; cell < model.grid.CellCount(); ++cell) {
            layer.bottom[cell] = random.Unit();
            layer.top[cell] =
                layer.bottom[cell] + (random.Below(thickIn) == 0 ? random.Unit() : 0.0f);
            if (random.Below(200) == 0) {
                const float strangers[] = {nan, infinity, -infinity, -0.0f, 1e-45f};
                layer.top[cell] = strangers[random.Below(5)];
                layer.bottom[cell] = strangers[random.Below(5)];
            }
        }
        layer.coversAround = random.Below(3) != 0;
        if (random.Below(4) == 0) {
            model.stack.layers.back().reset();
        }
    }
}

/// Mostly small grids; a few go over several words, rows or columns of tiles.
void SetUpRandomGrid(ProcessModel& model, TestRandom& random) {
    const auto upTo = [&random](std::uint32_t limit) {
        return 1 + static_cast<std::int32_t>(random.Below(limit));
    };
    switch (random.Below(20)) {
        case 0:
            return SetUpGrid(model, 1020 + upTo(300), upTo(4), 0.1f);
        case 1:
            return SetUpGrid(model, upTo(4), upTo(300), 0.1f);
        case 2:
            return SetUpGrid(model, upTo(200), upTo(80), 0.1f);
        case 3:
            return SetUpGrid(model, upTo(300), 1, 0.1f);
        default:
            return SetUpGrid(model, upTo(20), upTo(20), 0.1f);
    }
}

TEST(CoverMap, IsTheSameAsByNineLooksAtEachLayer) {
    const std::uint32_t cases = CaseCount(600);
    for (std::uint32_t seed = 0; seed < cases; ++seed) {
        TestRandom random(seed);
        ProcessModel model;
        SetUpRandomGrid(model, random);
        AppendRandomLayers(model, random);
        for (CoverCell& cover : model.stack.coverMap) {
            cover = {static_cast<std::int32_t>(random.Below(3)), random.Unit()};
        }
        const std::vector<CoverCell> before(model.stack.coverMap.begin(),
                                            model.stack.coverMap.end());
        UpdateCoverMapPlain(model.stack, model.grid);
        const auto plain = BitsOf(model.stack.coverMap);
        for (const bool wide : {false, true}) {
            AllowWideLanes(wide);
            for (std::int32_t threads = 1; threads <= 3; ++threads) {
                SetRowThreads(threads);
                model.stack.coverMap = before;
                UpdateCoverMap(model.stack, model.grid);
                ASSERT_EQ(BitsOf(model.stack.coverMap), plain)
                    << "seed " << seed << ", wide " << wide << ", threads " << threads;
            }
        }
        SetRowThreads(0);
    }
}

}  // namespace
}  // namespace zelmo
