#include "render/gl/uploaded_mesh.h"

#include <GL/glew.h>

#include <utility>

namespace zelmo {

namespace {

/// Describes one attribute of the array buffer that is bound: so many floats at this offset.
void SetAttribute(GLuint index, GLint floats, std::size_t stride, std::size_t offset) {
    glEnableVertexAttribArray(index);
    // OpenGL takes an offset in a buffer as a pointer.
    // NOLINTNEXTLINE(performance-no-int-to-ptr)
    const void* start = reinterpret_cast<const void*>(offset);
    glVertexAttribPointer(index, floats, GL_FLOAT, GL_FALSE, static_cast<GLsizei>(stride), start);
}

/// Describes the array buffer that is bound to the vertex array that is.
void SetAttributes(std::initializer_list<std::int32_t> attributeFloats) {
    std::size_t stride = 0;
    for (const std::int32_t floats : attributeFloats) {
        stride += static_cast<std::size_t>(floats) * sizeof(float);
    }
    GLuint index = 0;
    std::size_t offset = 0;
    for (const std::int32_t floats : attributeFloats) {
        SetAttribute(index++, floats, stride, offset);
        offset += static_cast<std::size_t>(floats) * sizeof(float);
    }
}

GLuint MakeBuffer(GLenum target, std::span<const std::byte> contents) {
    GLuint buffer = 0;
    glGenBuffers(1, &buffer);
    glBindBuffer(target, buffer);
    glBufferData(target, static_cast<GLsizeiptr>(contents.size()), contents.data(), GL_STATIC_DRAW);
    return buffer;
}

}  // namespace

UploadedVertices::UploadedVertices(std::initializer_list<std::int32_t> attributeFloats)
    : buffer_(MakeBuffer(GL_ARRAY_BUFFER, {})) {
    glGenVertexArrays(1, &array_);
    glBindVertexArray(array_);
    SetAttributes(attributeFloats);
    glBindVertexArray(0);
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

void UploadedVertices::Upload(std::span<const std::byte> vertices) {
    glBindBuffer(GL_ARRAY_BUFFER, buffer_);
    glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(vertices.size()), vertices.data(),
                 GL_STATIC_DRAW);
}

UploadedMesh::UploadedMesh(std::span<const MeshVertex> vertices,
                           std::span<const std::uint32_t> indices)
    : vertices_{3, 3},
      indexBuffer_(MakeBuffer(GL_ELEMENT_ARRAY_BUFFER, std::as_bytes(indices))),
      indexCount_(static_cast<std::int32_t>(indices.size())) {
    vertices_.Upload(std::as_bytes(vertices));
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
    std::swap(indexCount_, other.indexCount_);
    return *this;
}

}  // namespace zelmo
