#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include "model/layer_graphics.h"
#include "model/process_model.h"

namespace zelmo {

/// A graphics card that only keeps what it is given: the meshes of the living layers, and the
/// number of calls. Names of layer objects are counted up from 1.
class RecordingGraphics : public LayerGraphics {
public:
    struct Mesh {
        std::vector<MeshVertex> vertices;
        std::vector<std::uint32_t> indices;
        int uploads = 0;
    };

    void CreateLayerObjects(Layer& layer) override {
        layer.vertexBuffer = ++lastName_;
        layer.vertexArray = ++lastName_;
        layer.indexBuffer = ++lastName_;
        meshes[&layer] = Mesh{};
    }

    void UploadLayerMesh(const Layer& layer, std::span<const MeshVertex> vertices,
                         std::span<const std::uint32_t> indices) override {
        Mesh& mesh = meshes.at(&layer);
        mesh.vertices.assign(vertices.begin(), vertices.end());
        mesh.indices.assign(indices.begin(), indices.end());
        ++mesh.uploads;
    }

    void DestroyLayerObjects(Layer& layer) noexcept override {
        meshes.erase(&layer);
        ++destroyedLayers;
    }

    void CreateMarkerObjects(HeightMarkers& markers) override {
        markers.vertexBuffer = ++lastName_;
        markers.vertexArray = ++lastName_;
    }

    void UploadMarkers(const HeightMarkers& markers) override {
        markerVertices = markers.vertices;
        ++markerUploads;
    }

    void DestroyMarkerObjects(HeightMarkers&) noexcept override { ++destroyedMarkers; }

    std::map<const Layer*, Mesh> meshes;
    std::vector<MarkerVertex> markerVertices;
    int markerUploads = 0;
    int destroyedLayers = 0;
    int destroyedMarkers = 0;

private:
    std::uint32_t lastName_ = 0;
};

}  // namespace zelmo
