#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <new>
#include <utility>
#include <vector>

#include "model/height_markers.h"
#include "model/process_model.h"
#include "tests/model/call_log_graphics.h"
#include "tests/model/grid_model.h"

namespace zelmo {
namespace {

using Calls = std::vector<std::string>;

TEST(Layer, IsCreatedEmptyInItsSize) {
    const auto layer = CreateLayer(3, 5, 0.25f, nullptr);
    EXPECT_EQ(layer->rows, 3);
    EXPECT_EQ(layer->cols, 5);
    EXPECT_EQ(layer->spacing, 0.25f);
    EXPECT_EQ(layer->top, std::vector<float>(15, 0.0f));
    EXPECT_EQ(layer->bottom, std::vector<float>(15, 0.0f));
    EXPECT_EQ(layer->alpha, 1.0f);
    EXPECT_TRUE(layer->meshDirty);
    EXPECT_FALSE(layer->isPhotoresist);
    EXPECT_EQ(layer->material, "");
    EXPECT_EQ(layer->label, "");
    EXPECT_EQ(layer->color, (std::array<float, 3>{}));
    EXPECT_EQ(layer->indexCount, 0);
    EXPECT_EQ(layer->vertexBuffer, 0U);
    EXPECT_EQ(layer->indexBuffer, 0U);
    EXPECT_EQ(layer->vertexArray, 0U);
}

TEST(Layer, GetsItsGraphicsObjectsOnceItsSurfacesExist) {
    CallLogGraphics graphics;
    auto layer = CreateLayer(2, 4, 1.0f, &graphics);
    EXPECT_EQ(graphics.calls, (Calls{"create 1"}));
    EXPECT_EQ(graphics.topSizeAtCreation, 8U);
    DestroyLayer(layer);
    EXPECT_EQ(layer, nullptr);
    EXPECT_EQ(graphics.calls, (Calls{"create 1", "destroy 1"}));
}

TEST(Layer, DestroyingNoLayerDoesNothing) {
    std::unique_ptr<Layer> none;
    DestroyLayer(none);
    EXPECT_EQ(none, nullptr);
}

TEST(Layer, WhoseGraphicsObjectsFailIsReleased) {
    CallLogGraphics graphics;
    graphics.failCreation = true;
    EXPECT_THROW(CreateLayer(2, 2, 1.0f, &graphics), std::bad_alloc);
    EXPECT_EQ(graphics.calls, (Calls{"create 1", "destroy 1"}));
}

TEST(LayerStack, AppendsOnTopAndKeepsEmptySlots) {
    ProcessModel model;
    SetUpGrid(model, 2, 2, 1.0f);
    AppendFlatLayer(model, 0.0f, 1.0f, "first");
    AppendFlatLayer(model, 1.0f, 1.0f, "second");
    DestroyLayer(model.stack.layers[0]);
    AppendFlatLayer(model, 2.0f, 1.0f, "third");
    ASSERT_EQ(model.stack.layers.size(), 3U);
    EXPECT_EQ(model.stack.layers[0], nullptr);
    EXPECT_EQ(model.stack.layers[1]->material, "second");
    EXPECT_EQ(model.stack.layers[2]->material, "third");
}

TEST(LayerStack, GrowsByHalf) {
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

TEST(LayerStack, LayersStayWhereTheyAreWhenItGrows) {
    ProcessModel model;
    SetUpGrid(model, 1, 1, 1.0f);
    const Layer* first = &AppendFlatLayer(model, 0.0f, 1.0f);
    for (int i = 0; i < 50; ++i) {
        AppendFlatLayer(model, 0.0f, 1.0f);
    }
    EXPECT_EQ(model.stack.layers[0].get(), first);
}

TEST(ProcessModelLifetime, EmptyModelHasNothing) {
    const ProcessModel model;
    EXPECT_TRUE(model.stack.layers.empty());
    EXPECT_TRUE(model.stack.coverMap.empty());
    EXPECT_EQ(model.grid.CellCount(), 0U);
    EXPECT_EQ(model.graphics, nullptr);
}

TEST(ProcessModelLifetime, MarkersGoBeforeTheLayers) {
    CallLogGraphics graphics;
    {
        ProcessModel model;
        model.graphics = &graphics;
        SetUpGrid(model, 20, 20, 1.0f);
        InitHeightMarkers(model);
        AppendFlatLayer(model, 0.0f, 1.0f);
        AppendFlatLayer(model, 1.0f, 1.0f);
        graphics.calls.clear();
    }
    ASSERT_EQ(graphics.calls.size(), 3U);
    EXPECT_EQ(graphics.calls[0], "destroy markers");
    EXPECT_EQ(graphics.created, 2U);
    EXPECT_EQ(graphics.destroyed, 2U);
}

TEST(ProcessModelLifetime, TheCoverOutlivesTheMarkersAndLayers) {
    CallLogGraphics graphics;
    bool alive = true;
    {
        ProcessModel model;
        model.graphics = &graphics;
        SetUpGrid(model, 4, 4, 1.0f);
        AppendFlatLayer(model, 0.0f, 1.0f);
        graphics.onDestroy = [&](const Layer&) {
            alive = alive && model.stack.coverMap.size() == 16 &&
                    model.grid.neighbours.entries.size() == 49 &&
                    model.grid.distanceIndex.size() == 8;
        };
    }
    EXPECT_EQ(graphics.destroyed, 1U);
    EXPECT_TRUE(alive);
}

}  // namespace
}  // namespace zelmo
