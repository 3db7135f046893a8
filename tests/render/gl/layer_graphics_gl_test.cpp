#include "render/gl/layer_graphics_gl.h"

#include <GL/glew.h>

#include <cstddef>

#include "model/height_markers.h"
#include "tests/render/gl_test.h"

namespace zelmo {
namespace {

/// What a vertex array says about one of its attributes.
struct Attribute {
    GLint enabled = 0;
    GLint size = 0;
    GLint type = 0;
    GLint normalised = 0;
    GLint stride = 0;
    GLint buffer = 0;
    std::size_t offset = 0;

    bool operator==(const Attribute&) const = default;
};

Attribute ReadAttribute(GLuint vertexArray, GLuint index) {
    glBindVertexArray(vertexArray);
    Attribute attribute;
    glGetVertexAttribiv(index, GL_VERTEX_ATTRIB_ARRAY_ENABLED, &attribute.enabled);
    glGetVertexAttribiv(index, GL_VERTEX_ATTRIB_ARRAY_SIZE, &attribute.size);
    glGetVertexAttribiv(index, GL_VERTEX_ATTRIB_ARRAY_TYPE, &attribute.type);
    glGetVertexAttribiv(index, GL_VERTEX_ATTRIB_ARRAY_NORMALIZED, &attribute.normalised);
    glGetVertexAttribiv(index, GL_VERTEX_ATTRIB_ARRAY_STRIDE, &attribute.stride);
    glGetVertexAttribiv(index, GL_VERTEX_ATTRIB_ARRAY_BUFFER_BINDING, &attribute.buffer);
    void* pointer = nullptr;
    glGetVertexAttribPointerv(index, GL_VERTEX_ATTRIB_ARRAY_POINTER, &pointer);
    attribute.offset = reinterpret_cast<std::size_t>(pointer);
    glBindVertexArray(0);
    return attribute;
}

GLint BufferParameter(GLuint buffer, GLenum name) {
    glBindBuffer(GL_ARRAY_BUFFER, buffer);
    GLint value = 0;
    glGetBufferParameteriv(GL_ARRAY_BUFFER, name, &value);
    return value;
}

template <typename T>
std::vector<T> BufferContents(GLuint buffer) {
    std::vector<T> contents(static_cast<std::size_t>(BufferParameter(buffer, GL_BUFFER_SIZE)) /
                            sizeof(T));
    glGetBufferSubData(GL_ARRAY_BUFFER, 0, static_cast<GLsizeiptr>(contents.size() * sizeof(T)),
                       contents.data());
    return contents;
}

TEST(LayerGraphicsGl, GivesALayerEmptyBuffersAndItsVertexFormat) {
    LayerGraphicsGl graphics;
    const auto layer = CreateLayer(3, 4, 1.0f, &graphics);
    EXPECT_TRUE(glIsBuffer(layer->vertexBuffer));
    EXPECT_TRUE(glIsBuffer(layer->indexBuffer));
    EXPECT_TRUE(glIsVertexArray(layer->vertexArray));
    for (const GLuint buffer : {layer->vertexBuffer, layer->indexBuffer}) {
        EXPECT_EQ(BufferParameter(buffer, GL_BUFFER_SIZE), 0);
        EXPECT_EQ(BufferParameter(buffer, GL_BUFFER_USAGE), GL_STATIC_DRAW);
    }
    const auto buffer = static_cast<GLint>(layer->vertexBuffer);
    EXPECT_EQ(ReadAttribute(layer->vertexArray, 0),
              (Attribute{1, 3, GL_FLOAT, GL_FALSE, 24, buffer, 0}));
    EXPECT_EQ(ReadAttribute(layer->vertexArray, 1),
              (Attribute{1, 3, GL_FLOAT, GL_FALSE, 24, buffer, 12}));
    EXPECT_EQ(ReadAttribute(layer->vertexArray, 2).enabled, 0);
    GLint bound = -1;
    glGetIntegerv(GL_VERTEX_ARRAY_BINDING, &bound);
    EXPECT_EQ(bound, 0);
}

TEST(LayerGraphicsGl, ReplacesTheContentsOfALayersBuffers) {
    LayerGraphicsGl graphics;
    const auto layer = CreateLayer(3, 4, 1.0f, &graphics);
    const std::vector<MeshVertex> many(5, MeshVertex{{1.0f, 2.0f, 3.0f}, {4.0f, 5.0f, 6.0f}});
    graphics.UploadLayerMesh(*layer, many, std::vector<std::uint32_t>{0, 1, 2, 3, 4, 0});
    EXPECT_EQ(BufferContents<float>(layer->vertexBuffer).size(), 30u);
    graphics.UploadLayerMesh(*layer, std::span(many).first(1), std::vector<std::uint32_t>{7, 8, 9});
    EXPECT_EQ(BufferContents<float>(layer->vertexBuffer),
              (std::vector<float>{1.0f, 2.0f, 3.0f, 4.0f, 5.0f, 6.0f}));
    EXPECT_EQ(BufferContents<std::uint32_t>(layer->indexBuffer),
              (std::vector<std::uint32_t>{7, 8, 9}));
    EXPECT_EQ(BufferParameter(layer->vertexBuffer, GL_BUFFER_USAGE), GL_STATIC_DRAW);
    graphics.UploadLayerMesh(*layer, {}, {});
    EXPECT_EQ(BufferParameter(layer->vertexBuffer, GL_BUFFER_SIZE), 0);
    EXPECT_EQ(BufferParameter(layer->indexBuffer, GL_BUFFER_SIZE), 0);
}

TEST(LayerGraphicsGl, DeletesTheObjectsWithTheLayer) {
    LayerGraphicsGl graphics;
    auto layer = CreateLayer(3, 4, 1.0f, &graphics);
    const GLuint vertexBuffer = layer->vertexBuffer;
    const GLuint indexBuffer = layer->indexBuffer;
    const GLuint vertexArray = layer->vertexArray;
    DestroyLayer(layer);
    EXPECT_FALSE(glIsBuffer(vertexBuffer));
    EXPECT_FALSE(glIsBuffer(indexBuffer));
    EXPECT_FALSE(glIsVertexArray(vertexArray));
}

TEST(LayerGraphicsGl, MirrorsTheHeightMarkers) {
    LayerGraphicsGl graphics;
    const int before = CountGlObjects();
    {
        ProcessModel model;
        model.graphics = &graphics;
        model.grid.columns = 13;
        model.grid.rows = 13;
        model.grid.spacing = 1.0f;
        model.stack.coverMap.assign(model.grid.CellCount(), CoverCell{0, 2.5f});
        InitHeightMarkers(model);
        const HeightMarkers& markers = model.heightMarkers;
        EXPECT_EQ(BufferParameter(markers.vertexBuffer, GL_BUFFER_SIZE), 0);
        EXPECT_EQ(BufferParameter(markers.vertexBuffer, GL_BUFFER_USAGE), GL_STATIC_DRAW);
        const auto buffer = static_cast<GLint>(markers.vertexBuffer);
        EXPECT_EQ(ReadAttribute(markers.vertexArray, 0),
                  (Attribute{1, 3, GL_FLOAT, GL_FALSE, 28, buffer, 0}));
        EXPECT_EQ(ReadAttribute(markers.vertexArray, 1),
                  (Attribute{1, 3, GL_FLOAT, GL_FALSE, 28, buffer, 12}));
        EXPECT_EQ(ReadAttribute(markers.vertexArray, 2),
                  (Attribute{1, 1, GL_FLOAT, GL_FALSE, 28, buffer, 24}));

        UpdateHeightMarkers(model.heightMarkers);
        const std::vector<float> contents = BufferContents<float>(markers.vertexBuffer);
        ASSERT_EQ(contents.size(), 700u);
        EXPECT_EQ(contents[2], 2.5f);
        EXPECT_EQ(contents[6], 0.95f);
    }
    EXPECT_EQ(CountGlObjects(), before);
}

}  // namespace
}  // namespace zelmo
