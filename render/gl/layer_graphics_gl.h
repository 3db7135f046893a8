#pragma once

#include "model/layer_graphics.h"

namespace zelmo {

/// The layers and height markers of a model as buffers and vertex arrays of the GL context that is
/// current.
class LayerGraphicsGl : public LayerGraphics {
public:
    void CreateLayerObjects(Layer& layer) override;
    void UploadLayerMesh(const Layer& layer, std::span<const MeshVertex> vertices,
                         std::span<const std::uint32_t> indices) override;
    void DestroyLayerObjects(Layer& layer) noexcept override;

    void CreateMarkerObjects(HeightMarkers& markers) override;
    void UploadMarkers(const HeightMarkers& markers) override;
    void DestroyMarkerObjects(HeightMarkers& markers) noexcept override;
};

}  // namespace zelmo
