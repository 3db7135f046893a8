#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "render/height_markers.h"

namespace zelmo {

struct Layer;
struct ProcessModel;
struct SurfaceVersion;

/// A buffer of vertices with the vertex array that tells what they are made of, in the GL context
/// that is current; both go with it, while that context is current again.
class UploadedVertices {
public:
    UploadedVertices();
    ~UploadedVertices();
    UploadedVertices(UploadedVertices&& other) noexcept;
    UploadedVertices& operator=(UploadedVertices&& other) noexcept;

    std::uint32_t Buffer() const { return buffer_; }
    std::uint32_t Array() const { return array_; }

private:
    std::uint32_t buffer_ = 0;
    std::uint32_t array_ = 0;
};

/// The mesh of a layer in the GL context that is current.
class UploadedMesh {
public:
    /// Makes and uploads the mesh without the grid's margin of `marginCols` and `marginRows` cells.
    UploadedMesh(const Layer& layer, std::int32_t marginCols, std::int32_t marginRows);
    ~UploadedMesh();
    UploadedMesh(UploadedMesh&& other) noexcept;
    UploadedMesh& operator=(UploadedMesh&& other) noexcept;

    std::uint32_t VertexArray() const { return vertices_.Array(); }
    std::uint32_t IndexBuffer() const { return indexBuffer_; }
    std::int32_t IndexCount() const { return indexCount_; }

private:
    UploadedVertices vertices_;
    std::uint32_t indexBuffer_ = 0;
    std::int32_t indexCount_ = 0;
};

/// What the GL context holds of a model: the meshes of its layers, keyed by the versions of their
/// surfaces, and its height markers. To be used and destroyed while the context is current.
class StackUploads {
public:
    /// Uploads what is new or has changed; what the model no longer has goes.
    void Update(const ProcessModel& model);

    /// The mesh of a layer of the model that was uploaded last, or null.
    const UploadedMesh* MeshOf(const Layer& layer) const;

    const HeightMarkers& Markers() const { return markers_; }
    /// Vertex array of the markers; 0 before the first update.
    std::uint32_t MarkerArray() const;

private:
    struct Entry {
        std::weak_ptr<const SurfaceVersion> version;
        UploadedMesh mesh;
    };

    std::vector<Entry> meshes_;
    HeightMarkers markers_;
    std::unique_ptr<UploadedVertices> markerVertices_;
};

}  // namespace zelmo
