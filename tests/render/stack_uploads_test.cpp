#include "render/stack_uploads.h"

#include <GL/glew.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <vector>

#include "tests/render/gl_test.h"
#include "tests/render/made_stack.h"

namespace zelmo {
namespace {

/// A model of 13 by 13 cells one micrometre apart, with a margin of one cell, whose cover is flat.
std::unique_ptr<ProcessModel> MakeModel(float height) {
    auto model = MakeEmptyModel(10.0f, 10.0f, 13);
    model->stack.coverMap.assign(model->grid.CellCount(), CoverCell{0, height});
    return model;
}

Layer& AddLayer(ProcessModel& model, float bottom, float top) {
    AppendLayer(model.stack, CreateLayer(model.grid));
    Layer& layer = *model.stack.layers.back();
    std::fill(layer.bottom.begin(), layer.bottom.end(), bottom);
    std::fill(layer.top.begin(), layer.top.end(), top);
    return layer;
}

std::vector<float> FloatsOf(GLuint buffer) {
    glBindBuffer(GL_ARRAY_BUFFER, buffer);
    GLint size = 0;
    glGetBufferParameteriv(GL_ARRAY_BUFFER, GL_BUFFER_SIZE, &size);
    std::vector<float> contents(static_cast<std::size_t>(size) / sizeof(float));
    glGetBufferSubData(GL_ARRAY_BUFFER, 0, size, contents.data());
    return contents;
}

/// The names of a mesh's objects.
std::vector<GLuint> NamesOf(const UploadedMesh& mesh) {
    return {VertexBufferOf(mesh.VertexArray()), mesh.IndexBuffer(), mesh.VertexArray()};
}

bool Live(const std::vector<GLuint>& names) {
    const bool some = glIsBuffer(names[0]) || glIsBuffer(names[1]) || glIsVertexArray(names[2]);
    const bool all = glIsBuffer(names[0]) && glIsBuffer(names[1]) && glIsVertexArray(names[2]);
    EXPECT_EQ(some, all);
    return all;
}

/// Overwrites what GL holds of a mesh, so that an upload can be told.
void Deface(const UploadedMesh& mesh) {
    glBindBuffer(GL_ARRAY_BUFFER, VertexBufferOf(mesh.VertexArray()));
    glBufferData(GL_ARRAY_BUFFER, 0, nullptr, GL_STATIC_DRAW);
}

TEST(StackUploads, HoldNothingOfALayerThatWasNotUploaded) {
    const auto model = MakeModel(1.0f);
    const Layer& layer = AddLayer(*model, 0.0f, 1.0f);
    StackUploads uploads;
    EXPECT_EQ(FindMesh(uploads, layer), nullptr);
    UpdateUploads(uploads, *model);
    EXPECT_NE(FindMesh(uploads, layer), nullptr);
}

TEST(StackUploads, HoldTheMeshWithoutTheMargin) {
    const auto model = MakeModel(1.0f);
    ASSERT_EQ(model->grid.rows, 13);
    ASSERT_EQ(static_cast<int>(model->grid.marginX / model->grid.spacing), 1);
    const Layer& layer = AddLayer(*model, 0.0f, 1.0f);
    StackUploads uploads;
    UpdateUploads(uploads, *model);
    // A window of 11 by 11 cells: two sheets and a wall
    const UploadedMesh* mesh = FindMesh(uploads, layer);
    ASSERT_NE(mesh, nullptr);
    EXPECT_EQ(mesh->IndexCount(), 2 * 6 * 10 * 10 + 6 * 10);
    EXPECT_EQ(FloatsOf(VertexBufferOf(mesh->VertexArray())).size(),
              6u * (2u * 11u * 11u + 2u * 11u));
}

TEST(StackUploads, TakeUpChangedLayersOnly) {
    const auto model = MakeModel(2.0f);
    const Layer& first = AddLayer(*model, 0.0f, 1.0f);
    Layer& second = AddLayer(*model, 1.0f, 2.0f);
    StackUploads uploads;
    UpdateUploads(uploads, *model);
    const std::vector<GLuint> firstNames = NamesOf(*FindMesh(uploads, first));
    Deface(*FindMesh(uploads, first));
    Deface(*FindMesh(uploads, second));
    MarkChanged(second);
    UpdateUploads(uploads, *model);
    EXPECT_EQ(NamesOf(*FindMesh(uploads, first)), firstNames);
    EXPECT_TRUE(FloatsOf(VertexBufferOf(FindMesh(uploads, first)->VertexArray())).empty())
        << "left as it was";
    EXPECT_FALSE(FloatsOf(VertexBufferOf(FindMesh(uploads, second)->VertexArray())).empty());
}

TEST(StackUploads, HaveNoMeshOfSurfacesThatHaveChangedSince) {
    const auto model = MakeModel(1.0f);
    Layer& layer = AddLayer(*model, 0.0f, 1.0f);
    StackUploads uploads;
    UpdateUploads(uploads, *model);
    MarkChanged(layer);
    EXPECT_EQ(FindMesh(uploads, layer), nullptr);
}

TEST(StackUploads, LetAVanishedLayersObjectsGoAtTheNextUpdate) {
    const auto model = MakeModel(2.0f);
    const Layer& kept = AddLayer(*model, 0.0f, 1.0f);
    const Layer& gone = AddLayer(*model, 1.0f, 2.0f);
    StackUploads uploads;
    UpdateUploads(uploads, *model);
    const std::vector<GLuint> keptNames = NamesOf(*FindMesh(uploads, kept));
    const std::vector<GLuint> goneNames = NamesOf(*FindMesh(uploads, gone));
    model->stack.layers[1].reset();
    EXPECT_TRUE(Live(goneNames));
    UpdateUploads(uploads, *model);
    EXPECT_FALSE(Live(goneNames));
    EXPECT_TRUE(Live(keptNames));
    EXPECT_EQ(uploads.layers.size(), 1u);
}

TEST(StackUploads, LetAChangedLayersOldObjectsGo) {
    const auto model = MakeModel(1.0f);
    Layer& layer = AddLayer(*model, 0.0f, 1.0f);
    StackUploads uploads;
    UpdateUploads(uploads, *model);
    const int before = CountGlObjects();
    for (int i = 0; i < 5; ++i) {
        MarkChanged(layer);
        UpdateUploads(uploads, *model);
    }
    EXPECT_EQ(CountGlObjects(), before);
}

TEST(StackUploads, ReplaceOneModelByTheNext) {
    StackUploads uploads;
    auto first = MakeModel(1.0f);
    AddLayer(*first, 0.0f, 1.0f);
    AddLayer(*first, 1.0f, 2.0f);
    UpdateUploads(uploads, *first);
    const std::vector<GLuint> oldNames[] = {NamesOf(*FindMesh(uploads, *first->stack.layers[0])),
                                            NamesOf(*FindMesh(uploads, *first->stack.layers[1]))};
    first.reset();
    const auto second = MakeModel(1.0f);
    const Layer& layer = AddLayer(*second, 0.0f, 1.0f);
    EXPECT_EQ(FindMesh(uploads, layer), nullptr) << "though it may lie where another one lay";
    UpdateUploads(uploads, *second);
    EXPECT_NE(FindMesh(uploads, layer), nullptr);
    EXPECT_EQ(uploads.layers.size(), 1u);
    // The new mesh may have got one of the names.
    EXPECT_FALSE(Live(oldNames[0]) && Live(oldNames[1]));
}

TEST(StackUploads, TellLayersWithoutAVersionApart) {
    ProcessModel model = std::move(*MakeModel(1.0f));
    AppendLayer(model.stack, std::make_unique<Layer>());
    StackUploads uploads;
    UpdateUploads(uploads, model);
    EXPECT_EQ(FindMesh(uploads, *model.stack.layers[0]), nullptr)
        << "nobody can tell what was made of it";
}

TEST(StackUploads, MirrorTheHeightMarkers) {
    const auto model = MakeModel(2.5f);
    StackUploads uploads;
    UpdateUploads(uploads, *model);
    const std::vector<float> contents = FloatsOf(VertexBufferOf(uploads.markerVertices.Array()));
    ASSERT_EQ(contents.size(), 700u);
    EXPECT_EQ(contents[2], 2.5f);
    EXPECT_EQ(contents[6], 0.95f);
    GLint stride = 0;
    glBindVertexArray(uploads.markerVertices.Array());
    glGetVertexAttribiv(2, GL_VERTEX_ATTRIB_ARRAY_STRIDE, &stride);
    glBindVertexArray(0);
    EXPECT_EQ(stride, static_cast<GLint>(sizeof(MarkerVertex)));
}

TEST(StackUploads, RefreshTheMarkersWithoutAChangedLayer) {
    const auto model = MakeModel(1.0f);
    AddLayer(*model, 0.0f, 1.0f);
    StackUploads uploads;
    UpdateUploads(uploads, *model);
    const GLuint buffer = VertexBufferOf(uploads.markerVertices.Array());
    for (CoverCell& cell : model->stack.coverMap) {
        cell.height = 7.0f;
    }
    UpdateUploads(uploads, *model);
    EXPECT_EQ(VertexBufferOf(uploads.markerVertices.Array()), buffer) << "made once";
    ASSERT_FALSE(uploads.markers.vertices.empty());
    for (const MarkerVertex& marker : uploads.markers.vertices) {
        EXPECT_EQ(marker.position[2], 7.0f);
    }
    EXPECT_EQ(FloatsOf(buffer)[2], 7.0f);
}

TEST(StackUploads, LeaveNothingBehind) {
    const int before = CountGlObjects();
    {
        const auto model = MakeModel(1.0f);
        AddLayer(*model, 0.0f, 1.0f);
        AddLayer(*model, 1.0f, 2.0f);
        StackUploads uploads;
        UpdateUploads(uploads, *model);
        EXPECT_GT(CountGlObjects(), before);
    }
    EXPECT_EQ(CountGlObjects(), before);
}

}  // namespace
}  // namespace zelmo
