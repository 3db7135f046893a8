#include "render/gl/layer_graphics_gl.h"

#include <GL/glew.h>

#include <cstddef>

#include "model/process_model.h"

namespace zelmo {

namespace {

GLuint MakeEmptyBuffer(GLenum target) {
    GLuint buffer = 0;
    glGenBuffers(1, &buffer);
    glBindBuffer(target, buffer);
    glBufferData(target, 0, nullptr, GL_STATIC_DRAW);
    return buffer;
}

template <typename T>
void ReplaceContents(GLenum target, GLuint buffer, std::span<const T> contents) {
    glBindBuffer(target, buffer);
    glBufferData(target, static_cast<GLsizeiptr>(contents.size_bytes()), contents.data(),
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

}  // namespace

void LayerGraphicsGl::CreateLayerObjects(Layer& layer) {
    layer.vertexBuffer = MakeEmptyBuffer(GL_ARRAY_BUFFER);
    glGenVertexArrays(1, &layer.vertexArray);
    glBindVertexArray(layer.vertexArray);
    SetAttribute(0, 3, sizeof(MeshVertex), offsetof(MeshVertex, position));
    SetAttribute(1, 3, sizeof(MeshVertex), offsetof(MeshVertex, normal));
    glBindVertexArray(0);
    layer.indexBuffer = MakeEmptyBuffer(GL_ELEMENT_ARRAY_BUFFER);
}

void LayerGraphicsGl::UploadLayerMesh(const Layer& layer, std::span<const MeshVertex> vertices,
                                      std::span<const std::uint32_t> indices) {
    ReplaceContents(GL_ARRAY_BUFFER, layer.vertexBuffer, vertices);
    ReplaceContents(GL_ELEMENT_ARRAY_BUFFER, layer.indexBuffer, indices);
}

void LayerGraphicsGl::DestroyLayerObjects(Layer& layer) noexcept {
    glDeleteBuffers(1, &layer.indexBuffer);
    glDeleteVertexArrays(1, &layer.vertexArray);
    glDeleteBuffers(1, &layer.vertexBuffer);
    layer.indexBuffer = layer.vertexArray = layer.vertexBuffer = 0;
}

void LayerGraphicsGl::CreateMarkerObjects(HeightMarkers& markers) {
    markers.vertexBuffer = MakeEmptyBuffer(GL_ARRAY_BUFFER);
    glGenVertexArrays(1, &markers.vertexArray);
    glBindVertexArray(markers.vertexArray);
    SetAttribute(0, 3, sizeof(MarkerVertex), offsetof(MarkerVertex, position));
    SetAttribute(1, 3, sizeof(MarkerVertex), offsetof(MarkerVertex, normal));
    SetAttribute(2, 1, sizeof(MarkerVertex), offsetof(MarkerVertex, weight));
    glBindVertexArray(0);
}

void LayerGraphicsGl::UploadMarkers(const HeightMarkers& markers) {
    ReplaceContents(GL_ARRAY_BUFFER, markers.vertexBuffer,
                    std::span<const MarkerVertex>(markers.vertices));
}

void LayerGraphicsGl::DestroyMarkerObjects(HeightMarkers& markers) noexcept {
    glDeleteVertexArrays(1, &markers.vertexArray);
    glDeleteBuffers(1, &markers.vertexBuffer);
    markers.vertexArray = markers.vertexBuffer = 0;
}

}  // namespace zelmo
