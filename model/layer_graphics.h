#pragma once

#include <cstdint>
#include <span>

namespace zelmo {

struct Layer;
struct HeightMarkers;

/// One vertex of a layer's mesh: position in micrometres, normal of any length. 24 bytes.
struct MeshVertex {
    float position[3];
    float normal[3];
};
static_assert(sizeof(MeshVertex) == 24);

/// The seam between the model and the graphics card. A model that was given one of these has its
/// layers and height markers mirrored in GL objects; a model without one runs on plain arrays.
/// Every call happens on the thread that has the GL context current.
class LayerGraphics {
public:
    virtual ~LayerGraphics() = default;

    /// Makes the buffers and the vertex array of a new layer and stores their names in it.
    virtual void CreateLayerObjects(Layer& layer) = 0;
    /// Replaces the contents of the layer's buffers.
    virtual void UploadLayerMesh(const Layer& layer, std::span<const MeshVertex> vertices,
                                 std::span<const std::uint32_t> indices) = 0;
    virtual void DestroyLayerObjects(Layer& layer) noexcept = 0;

    virtual void CreateMarkerObjects(HeightMarkers& markers) = 0;
    /// Uploads `markers.vertices`.
    virtual void UploadMarkers(const HeightMarkers& markers) = 0;
    virtual void DestroyMarkerObjects(HeightMarkers& markers) noexcept = 0;
};

}  // namespace zelmo
