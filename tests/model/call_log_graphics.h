#pragma once

#include <cstdint>
#include <functional>
#include <new>
#include <string>
#include <vector>

#include "model/layer_graphics.h"
#include "model/process_model.h"

namespace zelmo {

/// A graphics card that writes down what is asked of it, in order: "create 1", "destroy 1",
/// "create markers" ... Layers are numbered from 1 as they come; the number is kept in
/// `vertexBuffer`. Can be told to fail like an exhausted card.
class CallLogGraphics : public LayerGraphics {
public:
    void CreateLayerObjects(Layer& layer) override {
        layer.vertexBuffer = ++created;
        calls.push_back("create " + std::to_string(layer.vertexBuffer));
        topSizeAtCreation = layer.top.size();
        if (failCreation) {
            throw std::bad_alloc();
        }
    }
    void UploadLayerMesh(const Layer& layer, std::span<const MeshVertex>,
                         std::span<const std::uint32_t>) override {
        calls.push_back("upload " + std::to_string(layer.vertexBuffer));
    }
    void DestroyLayerObjects(Layer& layer) noexcept override {
        ++destroyed;
        calls.push_back("destroy " + std::to_string(layer.vertexBuffer));
        if (onDestroy) {
            onDestroy(layer);
        }
    }
    void CreateMarkerObjects(HeightMarkers&) override {
        calls.push_back("create markers");
        if (failCreation) {
            throw std::bad_alloc();
        }
    }
    void UploadMarkers(const HeightMarkers& markers) override {
        calls.push_back("upload markers");
        uploadedMarkers = markers.vertices;
    }
    void DestroyMarkerObjects(HeightMarkers&) noexcept override {
        calls.push_back("destroy markers");
    }

    std::vector<std::string> calls;
    std::vector<MarkerVertex> uploadedMarkers;
    std::size_t topSizeAtCreation = 0;
    bool failCreation = false;
    std::uint32_t created = 0;
    std::uint32_t destroyed = 0;
    std::function<void(const Layer&)> onDestroy;
};

}  // namespace zelmo
