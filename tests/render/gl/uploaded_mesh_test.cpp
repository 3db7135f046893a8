#include "render/gl/uploaded_mesh.h"

#include <GL/glew.h>

#include <cstddef>
#include <span>
#include <utility>
#include <vector>

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

TEST(UploadedVertices, AreEmptyAtFirst) {
    const UploadedVertices vertices{3, 3, 1};
    EXPECT_TRUE(glIsBuffer(VertexBufferOf(vertices.Array())));
    EXPECT_TRUE(glIsVertexArray(vertices.Array()));
    EXPECT_EQ(BufferParameter(VertexBufferOf(vertices.Array()), GL_BUFFER_SIZE), 0);
    EXPECT_EQ(BufferParameter(VertexBufferOf(vertices.Array()), GL_BUFFER_USAGE), GL_STATIC_DRAW);
}

TEST(UploadedVertices, TellTheirAttributesToTheVertexArray) {
    const UploadedVertices vertices{3, 3, 1};
    const auto buffer = static_cast<GLint>(VertexBufferOf(vertices.Array()));
    EXPECT_EQ(ReadAttribute(vertices.Array(), 0),
              (Attribute{1, 3, GL_FLOAT, GL_FALSE, 28, buffer, 0}));
    EXPECT_EQ(ReadAttribute(vertices.Array(), 1),
              (Attribute{1, 3, GL_FLOAT, GL_FALSE, 28, buffer, 12}));
    EXPECT_EQ(ReadAttribute(vertices.Array(), 2),
              (Attribute{1, 1, GL_FLOAT, GL_FALSE, 28, buffer, 24}));
    EXPECT_EQ(ReadAttribute(vertices.Array(), 3).enabled, 0);
}

TEST(UploadedVertices, ReplaceTheirContents) {
    UploadedVertices vertices{3};
    const std::vector<float> many{1.0f, 2.0f, 3.0f, 4.0f, 5.0f, 6.0f};
    vertices.Upload(std::as_bytes(std::span(many)));
    EXPECT_EQ(BufferContents<float>(VertexBufferOf(vertices.Array())), many);
    const std::vector<float> few{7.0f, 8.0f, 9.0f};
    vertices.Upload(std::as_bytes(std::span(few)));
    EXPECT_EQ(BufferContents<float>(VertexBufferOf(vertices.Array())), few);
    EXPECT_EQ(BufferParameter(VertexBufferOf(vertices.Array()), GL_BUFFER_USAGE), GL_STATIC_DRAW);
    vertices.Upload({});
    EXPECT_EQ(BufferParameter(VertexBufferOf(vertices.Array()), GL_BUFFER_SIZE), 0);
}

TEST(UploadedVertices, HaveOneOwnerThroughMoves) {
    const int before = CountGlObjects();
    {
        UploadedVertices first{3};
        const GLuint buffer = VertexBufferOf(first.Array());
        const int made = CountGlObjects();
        EXPECT_GT(made, before);
        UploadedVertices second(std::move(first));
        EXPECT_EQ(VertexBufferOf(second.Array()), buffer);
        EXPECT_EQ(CountGlObjects(), made);
        UploadedVertices third{3};
        third = std::move(second);
        EXPECT_EQ(VertexBufferOf(third.Array()), buffer);
        EXPECT_TRUE(glIsBuffer(buffer));
    }
    EXPECT_EQ(CountGlObjects(), before);
}

const std::vector<MeshVertex> fiveVertices(5, MeshVertex{{1.0f, 2.0f, 3.0f}, {4.0f, 5.0f, 6.0f}});

TEST(UploadedMesh, HoldsItsVerticesAndIndices) {
    const std::vector<std::uint32_t> indices{7, 8, 9};
    const std::span oneVertex = std::span(fiveVertices).first(1);
    const UploadedMesh mesh(oneVertex, indices);
    EXPECT_TRUE(glIsVertexArray(mesh.VertexArray()));
    EXPECT_EQ(BufferContents<float>(VertexBufferOf(mesh.VertexArray())),
              (std::vector<float>{1.0f, 2.0f, 3.0f, 4.0f, 5.0f, 6.0f}));
    EXPECT_EQ(BufferContents<std::uint32_t>(mesh.IndexBuffer()), indices);
    EXPECT_EQ(mesh.IndexCount(), 3);
    for (const GLuint buffer : {VertexBufferOf(mesh.VertexArray()), mesh.IndexBuffer()}) {
        EXPECT_EQ(BufferParameter(buffer, GL_BUFFER_USAGE), GL_STATIC_DRAW);
    }
}

TEST(UploadedMesh, TellsItsVertexFormatAndLeavesNoArrayBound) {
    const UploadedMesh mesh(fiveVertices, {});
    const auto buffer = static_cast<GLint>(VertexBufferOf(mesh.VertexArray()));
    EXPECT_EQ(ReadAttribute(mesh.VertexArray(), 0),
              (Attribute{1, 3, GL_FLOAT, GL_FALSE, 24, buffer, 0}));
    EXPECT_EQ(ReadAttribute(mesh.VertexArray(), 1),
              (Attribute{1, 3, GL_FLOAT, GL_FALSE, 24, buffer, 12}));
    EXPECT_EQ(ReadAttribute(mesh.VertexArray(), 2).enabled, 0);
    const UploadedMesh another({}, {});
    GLint bound = -1;
    glGetIntegerv(GL_VERTEX_ARRAY_BINDING, &bound);
    EXPECT_EQ(bound, 0);
}

TEST(UploadedMesh, OfNothingHasEmptyBuffers) {
    const UploadedMesh mesh({}, {});
    EXPECT_EQ(BufferParameter(VertexBufferOf(mesh.VertexArray()), GL_BUFFER_SIZE), 0);
    EXPECT_EQ(BufferParameter(mesh.IndexBuffer(), GL_BUFFER_SIZE), 0);
    EXPECT_EQ(mesh.IndexCount(), 0);
}

TEST(UploadedMesh, TakesItsObjectsWithIt) {
    const int before = CountGlObjects();
    GLuint names[3] = {};
    {
        UploadedMesh first(fiveVertices, {});
        names[0] = VertexBufferOf(first.VertexArray());
        names[1] = first.IndexBuffer();
        names[2] = first.VertexArray();
        UploadedMesh second({}, {});
        second = std::move(first);
        EXPECT_EQ(VertexBufferOf(second.VertexArray()), names[0]);
        EXPECT_TRUE(glIsBuffer(names[0]));
    }
    EXPECT_FALSE(glIsBuffer(names[0]));
    EXPECT_FALSE(glIsBuffer(names[1]));
    EXPECT_FALSE(glIsVertexArray(names[2]));
    EXPECT_EQ(CountGlObjects(), before);
}

}  // namespace
}  // namespace zelmo
