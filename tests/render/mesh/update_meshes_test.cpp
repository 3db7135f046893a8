#include <gtest/gtest.h>

#include <cstddef>
#include <limits>
#include <memory>
#include <utility>

#include "model/grid/grid.h"
#include "model/height_markers.h"
#include "render/mesh/update_meshes.h"
#include "tests/support/recording_graphics.h"

namespace zelmo {
namespace {

/// A model of 13 by 13 cells one micrometre apart, with a margin of one cell, whose cover is flat.
std::unique_ptr<ProcessModel> MakeModel(LayerGraphics* graphics, float height) {
    auto model = std::make_unique<ProcessModel>();
    model->graphics = graphics;
    model->grid.columns = 13;
    model->settings.windowWidth = 10.0f;
    model->settings.windowHeight = 10.0f;
    SizeGrid(*model);
    model->stack.coverMap.assign(model->grid.CellCount(), CoverCell{0, height});
    InitHeightMarkers(*model);
    return model;
}

Layer& AddLayer(ProcessModel& model, float bottom, float top) {
    AppendLayer(model, CreateLayer(model.grid.rows, model.grid.columns, model.grid.spacing,
                                   model.graphics));
    Layer& layer = *model.stack.layers.back();
    layer.bottom.assign(layer.bottom.size(), bottom);
    layer.top.assign(layer.top.size(), top);
    return layer;
}

TEST(UpdateMeshes, ReturnsTheHighestPointOfTheCover) {
    const auto model = MakeModel(nullptr, 2.0f);
    model->stack.coverMap[17].height = 3.5f;
    model->stack.coverMap[3].height = -9.0f;
    EXPECT_EQ(UpdateMeshes(*model), 3.5f);
}

TEST(UpdateMeshes, ReturnsTheSmallestNormalNumberOverACoverWithoutHeight) {
    const auto flat = MakeModel(nullptr, 0.0f);
    EXPECT_EQ(UpdateMeshes(*flat), 1.1754944e-38f);
    const auto sunk = MakeModel(nullptr, -3.0f);
    EXPECT_EQ(UpdateMeshes(*sunk), 1.1754944e-38f);
}

TEST(UpdateMeshes, IgnoresHeightsThatAreNoNumbers) {
    const auto model = MakeModel(nullptr, 2.0f);
    model->stack.coverMap.front().height = std::numeric_limits<float>::quiet_NaN();
    model->stack.coverMap.back().height = std::numeric_limits<float>::quiet_NaN();
    EXPECT_EQ(UpdateMeshes(*model), 2.0f);
}

TEST(UpdateMeshes, BuildsTheMeshesOfChangedLayersOnly) {
    RecordingGraphics graphics;
    const auto model = MakeModel(&graphics, 2.0f);
    const Layer& first = AddLayer(*model, 0.0f, 1.0f);
    Layer& second = AddLayer(*model, 1.0f, 2.0f);
    UpdateMeshes(*model);
    EXPECT_FALSE(first.meshDirty);
    EXPECT_FALSE(second.meshDirty);
    EXPECT_EQ(graphics.meshes.at(&first).uploads, 1);
    EXPECT_EQ(graphics.meshes.at(&second).uploads, 1);
    second.meshDirty = true;
    UpdateMeshes(*model);
    EXPECT_EQ(graphics.meshes.at(&first).uploads, 1);
    EXPECT_EQ(graphics.meshes.at(&second).uploads, 2);
}

TEST(UpdateMeshes, CutsTheMarginOff) {
    RecordingGraphics graphics;
    const auto model = MakeModel(&graphics, 1.0f);
    ASSERT_EQ(model->grid.rows, 13);
    ASSERT_EQ(static_cast<int>(model->grid.marginX / model->grid.spacing), 1);
    const Layer& layer = AddLayer(*model, 0.0f, 1.0f);
    UpdateMeshes(*model);
    // A window of 11 by 11 cells: two sheets and a wall
    EXPECT_EQ(layer.indexCount, 2 * 6 * 10 * 10 + 6 * 10);
    EXPECT_EQ(graphics.meshes.at(&layer).vertices.size(), 2u * 11u * 11u + 2u * 11u);
}

TEST(UpdateMeshes, DeletesALayerWithoutThicknessInTheWindow) {
    RecordingGraphics graphics;
    const auto model = MakeModel(&graphics, 1.0f);
    AddLayer(*model, 0.0f, 1.0f);
    Layer& inTheMargin = AddLayer(*model, 1.0f, 1.0f);
    inTheMargin.top[0] = 5.0f;
    AddLayer(*model, 1.0f, 2.0f);
    UpdateMeshes(*model);
    ASSERT_EQ(model->stack.layers.size(), 3u);
    EXPECT_NE(model->stack.layers[0], nullptr);
    EXPECT_EQ(model->stack.layers[1], nullptr);
    EXPECT_NE(model->stack.layers[2], nullptr);
    EXPECT_EQ(model->stack.layerCount, 2);
    EXPECT_EQ(graphics.destroyedLayers, 1);
}

TEST(UpdateMeshes, KeepsAnUnchangedLayerThatLostItsThickness) {
    const auto model = MakeModel(nullptr, 1.0f);
    Layer& layer = AddLayer(*model, 0.0f, 1.0f);
    UpdateMeshes(*model);
    const std::int32_t indexCount = layer.indexCount;
    layer.top = layer.bottom;
    UpdateMeshes(*model);
    ASSERT_NE(model->stack.layers[0], nullptr);
    EXPECT_EQ(layer.indexCount, indexCount);
    layer.meshDirty = true;
    UpdateMeshes(*model);
    EXPECT_EQ(model->stack.layers[0], nullptr);
    EXPECT_EQ(model->stack.layerCount, 0);
}

TEST(UpdateMeshes, WithNoChangedLayerStillRefreshesMarkersAndCount) {
    RecordingGraphics graphics;
    const auto model = MakeModel(&graphics, 1.0f);
    AddLayer(*model, 0.0f, 1.0f);
    AddLayer(*model, 1.0f, 2.0f);
    UpdateMeshes(*model);
    EXPECT_EQ(model->stack.layerCount, 2);
    const int uploads = graphics.markerUploads;
    for (CoverCell& cell : model->stack.coverMap) {
        cell.height = 7.0f;
    }
    DestroyLayer(model->stack.layers[1]);
    UpdateMeshes(*model);
    EXPECT_EQ(model->stack.layerCount, 1);
    EXPECT_EQ(graphics.markerUploads, uploads + 1);
    ASSERT_FALSE(graphics.markerVertices.empty());
    for (const MarkerVertex& marker : graphics.markerVertices) {
        EXPECT_EQ(marker.position[2], 7.0f);
    }
}

}  // namespace
}  // namespace zelmo
