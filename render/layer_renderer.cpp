#include "render/layer_renderer.h"

#include <GL/glew.h>

#include <algorithm>
#include <string_view>

#include "model/stack.h"
#include "render/gl/shader_program.h"
#include "render/stack_uploads.h"

namespace zelmo {

namespace {

/// Draws the layer's whole mesh.
void DrawMesh(const UploadedMesh& mesh) {
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, mesh.IndexBuffer());
    glDrawElements(GL_TRIANGLES, mesh.IndexCount(), GL_UNSIGNED_INT, nullptr);
}

/// Draws the triangles between these of the mesh's vertices.
void DrawTriangles(std::span<const std::uint32_t> indices) {
    constexpr std::size_t most = std::size_t{3} * 40000;
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0);
    while (!indices.empty()) {
        const std::span<const std::uint32_t> some = indices.first(std::min(most, indices.size()));
        glDrawElements(GL_TRIANGLES, static_cast<GLsizei>(some.size()), GL_UNSIGNED_INT,
                       some.data());
        glFlush();  // these are rasterised while the next ones are chosen and set up
        indices = indices.subspan(some.size());
    }
}

/// Whether OpenGL runs on the processor. A graphics card draws hidden triangles in less time than
/// it takes to find them.
bool DrawsInSoftware() {
    const GLubyte* text = glGetString(GL_RENDERER);
    const std::string_view renderer = text != nullptr ? reinterpret_cast<const char*>(text) : "";
    const auto has = [&](const char* word) { return renderer.find(word) != renderer.npos; };
    return has("llvmpipe") || has("softpipe") || has("Software");
}

}  // namespace

LayerRenderer::LayerRenderer(const Stack& stack, const Grid& grid, const StackUploads& uploads,
                             const ShaderProgram& shader, const PictureView& view,
                             const std::optional<HidingRules>& rules)
    : stack_(stack),
      uploads_(uploads),
      shader_(shader),
      drawsAll_(!rules || !shader.HiddenPartsMayBeLeftOut()) {
    if (shader.IsUsable() && !drawsAll_ && DrawsInSoftware()) {
        chosen_ = ChooseTriangles(stack, grid, view, *rules);
    }
}

void LayerRenderer::Draw(bool isLast) {
    if (!shader_.IsUsable()) {
        return;
    }
    for (std::size_t slot = 0; slot < stack_.layers.size(); ++slot) {
        if (const Layer* layer = stack_.layers[slot].get(); layer != nullptr) {
            DrawLayer(slot, *layer, isLast);
        }
    }
    glEnable(GL_BLEND);
}

void LayerRenderer::DrawLayer(std::size_t slot, const Layer& layer, bool isLast) {
    const UploadedMesh* const mesh = FindMesh(uploads_, layer);
    if (mesh == nullptr) {
        return;
    }
    // What lets nothing through replaces what is behind it.
    const bool blends = drawsAll_ || !IsOpaque(layer);
    (blends ? glEnable : glDisable)(GL_BLEND);
    glUniform3fv(shader_.Uniform("color"), 1, layer.color.data());
    glUniform1f(shader_.Uniform("alpha"), layer.alpha);
    glBindVertexArray(mesh->VertexArray());
    if (chosen_) {
        DrawTriangles(FindIndices(slot, isLast));
    } else {
        DrawMesh(*mesh);
    }
    if (const UploadedMesh* const walls = FindWalls(uploads_, layer); walls != nullptr) {
        glBindVertexArray(walls->VertexArray());
        DrawMesh(*walls);
    }
    glBindVertexArray(0);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0);
}

/// What is drawn of the layer in a slot: found for the first part, kept if others follow.
std::span<const std::uint32_t> LayerRenderer::FindIndices(std::size_t slot, bool isLast) {
    if (slot < kept_.size() && !kept_[slot].empty()) {
        return kept_[slot];
    }
    if (isLast) {
        FindDrawnTriangles(*chosen_, slot, indices_);
        return indices_;
    }
    kept_.resize(stack_.layers.size());
    FindDrawnTriangles(*chosen_, slot, kept_[slot]);
    return kept_[slot];
}

}  // namespace zelmo
