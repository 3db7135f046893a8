#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "model/process_model.h"
#include "tests/model/grid_model.h"

namespace zelmo {
namespace {

Grid GridOf(std::int32_t cols, std::int32_t rows, float spacing) {
    Grid grid;
    grid.columns = cols;
    grid.rows = rows;
    grid.spacing = spacing;
    return grid;
}

TEST(Layer, IsCreatedEmptyInItsSize) {
    const auto layer = CreateLayer(GridOf(5, 3, 0.25f));
    EXPECT_EQ(layer->rows, 3);
    EXPECT_EQ(layer->cols, 5);
    EXPECT_EQ(layer->spacing, 0.25f);
    EXPECT_EQ(layer->top, std::vector<float>(15, 0.0f));
    EXPECT_EQ(layer->bottom, std::vector<float>(15, 0.0f));
    EXPECT_EQ(layer->alpha, 1.0f);
    EXPECT_TRUE(layer->changed);
    EXPECT_NE(layer->version, nullptr);
    EXPECT_FALSE(layer->isPhotoresist);
    EXPECT_EQ(layer->material, "");
    EXPECT_EQ(layer->label, "");
    EXPECT_EQ(layer->color, (std::array<float, 3>{}));
}

TEST(Layer, OfAStepHasItsMaterialLabelColourAndOpacity) {
    ProcessStep step;
    step.material = "ox";
    step.label = "OXIDE";
    step.color = {0.25f, 0.5f, 0.75f};
    step.alpha = 0.5f;
    const auto layer = CreateLayer(GridOf(2, 4, 1.0f), step);
    EXPECT_EQ(layer->top, std::vector<float>(8, 0.0f));
    EXPECT_EQ(layer->material, "ox");
    EXPECT_EQ(layer->label, "OXIDE");
    EXPECT_EQ(layer->color, step.color);
    EXPECT_EQ(layer->alpha, 0.5f);
    EXPECT_FALSE(layer->isPhotoresist);
}

TEST(Layer, HasAnotherVersionOnceItHasChanged) {
    const auto layer = CreateLayer(GridOf(2, 2, 1.0f));
    const auto other = CreateLayer(GridOf(2, 2, 1.0f));
    EXPECT_NE(layer->version, other->version);
    const auto version = layer->version;
    layer->changed = false;
    MarkChanged(*layer);
    EXPECT_TRUE(layer->changed);
    EXPECT_NE(layer->version, version);
}

TEST(Stack, AppendsOnTopAndKeepsEmptySlots) {
    ProcessModel model;
    SetUpGrid(model, 2, 2, 1.0f);
    AppendFlatLayer(model, 0.0f, 1.0f, "first");
    AppendFlatLayer(model, 1.0f, 1.0f, "second");
    model.stack.layers[0].reset();
    AppendFlatLayer(model, 2.0f, 1.0f, "third");
    ASSERT_EQ(model.stack.layers.size(), 3U);
    EXPECT_EQ(model.stack.layers[0], nullptr);
    EXPECT_EQ(model.stack.layers[1]->material, "second");
    EXPECT_EQ(model.stack.layers[2]->material, "third");
}

TEST(Stack, GrowsByHalf) {
    ProcessModel model;
    SetUpGrid(model, 1, 1, 1.0f);
    std::vector<std::size_t> capacities;
    for (int i = 0; i < 20; ++i) {
        AppendFlatLayer(model, 0.0f, 1.0f);
        if (capacities.empty() || capacities.back() != model.stack.layers.capacity()) {
            capacities.push_back(model.stack.layers.capacity());
        }
    }
    EXPECT_EQ(capacities, (std::vector<std::size_t>{1, 2, 3, 4, 6, 9, 13, 19, 28}));
}

TEST(Stack, LayersStayWhereTheyAreWhenItGrows) {
    ProcessModel model;
    SetUpGrid(model, 1, 1, 1.0f);
    const Layer* first = &AppendFlatLayer(model, 0.0f, 1.0f);
    for (int i = 0; i < 50; ++i) {
        AppendFlatLayer(model, 0.0f, 1.0f);
    }
    EXPECT_EQ(model.stack.layers[0].get(), first);
}

TEST(ProcessModel, HasNothingAtFirst) {
    const ProcessModel model;
    EXPECT_TRUE(model.stack.layers.empty());
    EXPECT_TRUE(model.stack.coverMap.empty());
    EXPECT_EQ(model.grid.CellCount(), 0U);
    EXPECT_EQ(model.stack.layerCount, 0);
}

}  // namespace
}  // namespace zelmo
