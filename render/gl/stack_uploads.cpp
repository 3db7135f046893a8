#include "render/gl/stack_uploads.h"

#include <GL/glew.h>

#include <algorithm>
#include <cstddef>
#include <utility>

#include "model/grid/shown_window.h"
#include "model/process_model.h"
#include "render/mesh/layer_mesh.h"

namespace zelmo {

namespace {

GLuint MakeEmptyBuffer(GLenum target) {
    GLuint buffer = 0;
    glGenBuffers(1, &buffer);
    glBindBuffer(target, buffer);
    glBufferData(target, 0, nullptr, GL_STATIC_DRAW);
    return buffer;
}

template <typename Values>
void ReplaceContents(GLenum target, GLuint buffer, const Values& values) {
    glBindBuffer(target, buffer);
    glBufferData(target, static_cast<GLsizeiptr>(std::span(values).size_bytes()), values.data(),
                 GL_STATIC_DRAW);
}

/// Describes one attribute of the array buffer that is bound: so many floats at this offset.
void SetAttribute(GLuint index, GLint floats, std::size_t stride, std::size_t offset) {
    glEnableVertexAttribArray(index);
    // OpenGL takes an offset in a buffer as a pointer.
    // NOLINTNEXTLINE(performance-no-int-to-ptr)
    const void* start = reinterpret_cast<const void*>(offset);
    glVertexAttribPointer(index, floats, GL_FLOAT, GL_FALSE, static_cast<GLsizei>(stride), start);
}

/// Describes the vertices of layers to a vertex array.
void DescribeMesh(const UploadedVertices& vertices) {
    glBindVertexArray(vertices.Array());
    SetAttribute(0, 3, sizeof(MeshVertex), offsetof(MeshVertex, position));
    SetAttribute(1, 3, sizeof(MeshVertex), offsetof(MeshVertex, normal));
    glBindVertexArray(0);
}

void DescribeMarkers(const UploadedVertices& vertices) {
    glBindVertexArray(vertices.Array());
    SetAttribute(0, 3, sizeof(MarkerVertex), offsetof(MarkerVertex, position));
    SetAttribute(1, 3, sizeof(MarkerVertex), offsetof(MarkerVertex, normal));
    SetAttribute(2, 1, sizeof(MarkerVertex), offsetof(MarkerVertex, weight));
    glBindVertexArray(0);
}

bool IsOf(const std::weak_ptr<const SurfaceVersion>& version, const Layer& layer) {
    return version.lock() == layer.version;
}

}  // namespace

UploadedVertices::UploadedVertices() : buffer_(MakeEmptyBuffer(GL_ARRAY_BUFFER)) {
    glGenVertexArrays(1, &array_);
}

UploadedVertices::~UploadedVertices() {
    // A name that was moved away is 0, which deletes nothing.
    glDeleteVertexArrays(1, &array_);
    glDeleteBuffers(1, &buffer_);
}

UploadedVertices::UploadedVertices(UploadedVertices&& other) noexcept
    : buffer_(std::exchange(other.buffer_, 0)), array_(std::exchange(other.array_, 0)) {}

UploadedVertices& UploadedVertices::operator=(UploadedVertices&& other) noexcept {
    std::swap(buffer_, other.buffer_);
    std::swap(array_, other.array_);
    return *this;
}

UploadedMesh::UploadedMesh(const Layer& layer, std::int32_t marginCols, std::int32_t marginRows)
    : indexBuffer_(MakeEmptyBuffer(GL_ELEMENT_ARRAY_BUFFER)) {
    DescribeMesh(vertices_);
    const LayerMesh mesh = MakeLayerMesh(layer, marginCols, marginRows);
    indexCount_ = static_cast<std::int32_t>(mesh.indices.size());
    ReplaceContents(GL_ARRAY_BUFFER, vertices_.Buffer(), mesh.vertices);
    ReplaceContents(GL_ELEMENT_ARRAY_BUFFER, indexBuffer_, mesh.indices);
}

UploadedMesh::~UploadedMesh() {
    glDeleteBuffers(1, &indexBuffer_);
}

UploadedMesh::UploadedMesh(UploadedMesh&& other) noexcept
    : vertices_(std::move(other.vertices_)),
      indexBuffer_(std::exchange(other.indexBuffer_, 0)),
      indexCount_(other.indexCount_) {}

UploadedMesh& UploadedMesh::operator=(UploadedMesh&& other) noexcept {
    vertices_ = std::move(other.vertices_);
    std::swap(indexBuffer_, other.indexBuffer_);
    indexCount_ = other.indexCount_;
    return *this;
}

void StackUploads::Update(const ProcessModel& model) {
    const auto isGone = [&model](const Entry& entry) {
        return std::none_of(model.stack.layers.begin(), model.stack.layers.end(),
                            [&entry](const std::unique_ptr<Layer>& layer) {
                                return layer != nullptr && IsOf(entry.version, *layer);
                            });
    };
    std::erase_if(meshes_, isGone);
    const ShownWindow window = FindShownWindow(model.grid);
    for (const std::unique_ptr<Layer>& layer : model.stack.layers) {
        if (layer != nullptr && MeshOf(*layer) == nullptr) {
            meshes_.push_back(
                {layer->version, UploadedMesh(*layer, window.marginCols, window.marginRows)});
        }
    }
    markers_ = SampleHeightMarkers(model.grid, model.stack.coverMap);
    if (markerVertices_ == nullptr) {
        markerVertices_ = std::make_unique<UploadedVertices>();
        DescribeMarkers(*markerVertices_);
    }
    ReplaceContents(GL_ARRAY_BUFFER, markerVertices_->Buffer(), markers_.vertices);
}

const UploadedMesh* StackUploads::MeshOf(const Layer& layer) const {
    const auto found = std::find_if(meshes_.begin(), meshes_.end(), [&layer](const Entry& entry) {
        return IsOf(entry.version, layer);
    });
    return found == meshes_.end() ? nullptr : &found->mesh;
}

std::uint32_t StackUploads::MarkerArray() const {
    return markerVertices_ != nullptr ? markerVertices_->Array() : 0;
}

}  // namespace zelmo
