#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "model/process_model.h"
#include "tests/model/grid_model.h"
#include "tests/plain/mesh_plain.h"
#include "tests/support/case_count.h"
#include "tests/support/strange_numbers.h"

namespace zelmo {
namespace {

/// A grid whose cells are one micrometre apart, with margins of these cells around the window.
void SetUpWindow(ProcessModel& model, std::int32_t cols, std::int32_t rows, float marginCols,
                 float marginRows) {
    SetUpGrid(model, cols, rows, 1.0f);
    model.grid.marginX = marginCols;
    model.grid.marginY = marginRows;
}

/// A layer without thickness but at one cell.
Layer& AppendSpot(ProcessModel& model, std::int32_t col, std::int32_t row, float top = 2.0f) {
    Layer& layer = AppendFlatLayer(model, 1.0f, 0.0f);
    layer.top[CellAt(model, col, row)] = top;
    return layer;
}

/// Which slots are taken.
std::vector<bool> SlotsOf(const Stack& stack) {
    std::vector<bool> slots;
    for (const auto& layer : stack.layers) {
        slots.push_back(layer != nullptr);
    }
    return slots;
}

TEST(SettleStack, DropsALayerWithoutThicknessInTheWindow) {
    ProcessModel model;
    SetUpWindow(model, 13, 11, 1.0f, 1.0f);
    AppendFlatLayer(model, 0.0f, 1.0f);
    AppendSpot(model, 0, 5);
    AppendSpot(model, 12, 5);
    AppendSpot(model, 6, 0);
    AppendSpot(model, 6, 10);
    AppendSpot(model, 1, 1);
    AppendSpot(model, 11, 9);
    SettleStack(model.stack, model.grid);
    EXPECT_EQ(SlotsOf(model.stack),
              (std::vector<bool>{true, false, false, false, false, true, true}));
    EXPECT_EQ(model.stack.layerCount, 3);
}

TEST(SettleStack, LooksAtChangedLayersOnly) {
    ProcessModel model;
    SetUpWindow(model, 5, 5, 0.0f, 0.0f);
    Layer& layer = AppendFlatLayer(model, 0.0f, 1.0f);
    SettleStack(model.stack, model.grid);
    EXPECT_FALSE(layer.changed);
    const auto version = layer.version;
    layer.top = layer.bottom;
    SettleStack(model.stack, model.grid);
    ASSERT_NE(model.stack.layers[0], nullptr);
    EXPECT_EQ(model.stack.layerCount, 1);
    EXPECT_EQ(layer.version, version);
    MarkChanged(layer);
    SettleStack(model.stack, model.grid);
    EXPECT_EQ(model.stack.layers[0], nullptr);
    EXPECT_EQ(model.stack.layerCount, 0);
}

TEST(SettleStack, CountsTheLayersAlsoWhenNoneHasChanged) {
    ProcessModel model;
    SetUpWindow(model, 5, 5, 0.0f, 0.0f);
    AppendFlatLayer(model, 0.0f, 1.0f);
    AppendFlatLayer(model, 1.0f, 1.0f);
    SettleStack(model.stack, model.grid);
    EXPECT_EQ(model.stack.layerCount, 2);
    model.stack.layers[1].reset();
    SettleStack(model.stack, model.grid);
    EXPECT_EQ(model.stack.layerCount, 1);
}

TEST(SettleStack, AnythingButExactlyZeroIsThickness) {
    ProcessModel model;
    SetUpWindow(model, 4, 4, 0.0f, 0.0f);
    AppendSpot(model, 2, 2, nan);
    AppendSpot(model, 2, 2, 0.5f);
    AppendFlatLayer(model, infinity, 0.0f);
    AppendFlatLayer(model, 0.0f, 0.0f).top.assign(16, -0.0f);
    AppendFlatLayer(model, 0.0f, 0.0f).top[15] = 1e-45f;
    SettleStack(model.stack, model.grid);
    EXPECT_EQ(SlotsOf(model.stack), (std::vector<bool>{true, true, true, false, true}));
}

TEST(SettleStack, AWindowOfOneRowShowsItsFrontAndOneOfOneColumnNothing) {
    ProcessModel flat;
    SetUpWindow(flat, 6, 3, 1.0f, 1.0f);
    AppendSpot(flat, 3, 1);
    AppendSpot(flat, 3, 2);
    SettleStack(flat.stack, flat.grid);
    EXPECT_EQ(SlotsOf(flat.stack), (std::vector<bool>{true, false}));

    ProcessModel narrow;
    SetUpWindow(narrow, 3, 3, 1.0f, 0.0f);
    AppendFlatLayer(narrow, 0.0f, 1.0f);
    SettleStack(narrow.stack, narrow.grid);
    EXPECT_EQ(SlotsOf(narrow.stack), (std::vector<bool>{false}));
}

TEST(SettleStack, AMarginBelowNothingIsNone) {
    ProcessModel model;
    SetUpWindow(model, 4, 4, -2.0f, -1.0e30f);
    AppendSpot(model, 0, 0);
    AppendSpot(model, 3, 3);
    AppendFlatLayer(model, 1.0f, 0.0f);
    SettleStack(model.stack, model.grid);
    EXPECT_EQ(SlotsOf(model.stack), (std::vector<bool>{true, true, false}));
}

/// How many indices the layer's mesh has in a window without these cells on each side.
std::size_t IndexCountPlain(const Layer& layer, std::int32_t marginCols, std::int32_t marginRows) {
    marginCols = std::max(marginCols, 0);
    marginRows = std::max(marginRows, 0);
    if (layer.cols <= 2 * marginCols || layer.rows <= 2 * marginRows) {
        return 0;
    }
    return MakeLayerMeshPlain(layer, marginCols, marginRows).indices.size();
}

/// Layers that are thin or thick at a few cells only, some of them unchanged.
void AppendSpottedLayers(ProcessModel& model, TestRandom& random) {
    const std::uint32_t layers = 1 + random.Below(5);
    const auto cells = static_cast<std::uint32_t>(model.grid.CellCount());
    for (std::uint32_t i = 0; i < layers; ++i) {
        const float bottom = random.Unit();
        Layer& layer = AppendFlatLayer(model, bottom, 0.0f);
        layer.changed = random.Below(5) != 0;
        const std::uint32_t spots = random.Below(4);
        for (std::uint32_t spot = 0; spot < spots; ++spot) {
            const float tops[] = {bottom, nan, infinity, -bottom, bottom + random.Unit()};
            layer.top[random.Below(cells)] = tops[random.Below(5)];
        }
        if (random.Below(6) == 0) {
            model.stack.layers.back().reset();
        }
    }
}

TEST(SettleStack, KeepsWhatHasAMesh) {
    const std::uint32_t cases = CaseCount(3000);
    std::uint32_t kept = 0;
    std::uint32_t dropped = 0;
    for (std::uint32_t seed = 0; seed < cases; ++seed) {
        TestRandom random(seed);
        const auto upTo = [&random](std::uint32_t limit) {
            return static_cast<std::int32_t>(random.Below(limit));
        };
        ProcessModel model;
        const std::int32_t marginCols = upTo(4) - 1;
        const std::int32_t marginRows = upTo(4) - 1;
        // A part of a cell does not count.
        SetUpWindow(model, 1 + upTo(9), 1 + upTo(9), static_cast<float>(marginCols) * 1.25f,
                    static_cast<float>(marginRows) * 1.25f);
        AppendSpottedLayers(model, random);
        std::vector<bool> expected;
        for (const auto& layer : model.stack.layers) {
            const bool stays =
                layer != nullptr &&
                (!layer->changed || IndexCountPlain(*layer, marginCols, marginRows) > 0);
            expected.push_back(stays);
            kept += stays && layer->changed ? 1 : 0;
            dropped += !stays && layer != nullptr ? 1 : 0;
        }
        SettleStack(model.stack, model.grid);
        ASSERT_EQ(SlotsOf(model.stack), expected) << "seed " << seed;
        ASSERT_EQ(model.stack.layerCount, std::count(expected.begin(), expected.end(), true));
    }
    EXPECT_GT(kept, cases / 10);
    EXPECT_GT(dropped, cases / 10);
}

}  // namespace
}  // namespace zelmo
