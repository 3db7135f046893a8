#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <span>

#include "render/mesh/mesh_vertex.h"

namespace zelmo {

/// A buffer of vertices with the vertex array that tells what they are made of, in the GL context
/// that is current; both go with it, while that context is current again.
class UploadedVertices {
public:
    /// Empty. The attributes of a vertex, from index 0 on, follow one another as so many floats
    /// each.
    UploadedVertices(std::initializer_list<std::int32_t> attributeFloats);
    ~UploadedVertices();
    UploadedVertices(UploadedVertices&& other) noexcept;
    UploadedVertices& operator=(UploadedVertices&& other) noexcept;

    /// Replaces the contents.
    void Upload(std::span<const std::byte> vertices);

    std::uint32_t Array() const { return array_; }

private:
    std::uint32_t buffer_ = 0;
    std::uint32_t array_ = 0;
};

/// The mesh of a layer in the GL context that is current.
class UploadedMesh {
public:
    /// `indices` are three a triangle.
    UploadedMesh(std::span<const MeshVertex> vertices, std::span<const std::uint32_t> indices);
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

}  // namespace zelmo
