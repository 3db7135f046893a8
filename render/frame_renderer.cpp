#include "render/frame_renderer.h"

#include <GL/glew.h>

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <span>
#include <string_view>

#include "base/conversions.h"
#include "model/process_model.h"
#include "render/camera.h"
#include "render/gl/shader_program.h"
#include "render/overlays.h"
#include "render/stack_uploads.h"
#include "render/visible/visible_triangles.h"

namespace zelmo {

namespace {

constexpr std::int32_t legendStrip = 320;
constexpr std::array<float, 3> lightColor{1.0f, 1.0f, 1.0f};

/// In front of the window at the distance of the camera, at 0.9 of that distance in height.
std::array<float, 3> LightPosition(float windowWidth) {
    return {windowWidth * 0.5f, -windowWidth * 4.0f, windowWidth * 0.9f * 4.0f};
}

GLint UniformLocation(const ShaderProgram& shader, const char* name) {
    return glGetUniformLocation(shader.Program(), name);
}

/// Makes the shader current, with the camera's transform.
void UseShader(const ShaderProgram& shader, const Camera& camera) {
    glUseProgram(shader.Program());
    glUniformMatrix4fv(UniformLocation(shader, "transform"), 1, GL_FALSE, camera.transform.data());
}

void SetLight(const ShaderProgram& shader, float windowWidth) {
    glUniform3fv(UniformLocation(shader, "lightColor"), 1, lightColor.data());
    glUniform3fv(UniformLocation(shader, "lightPos"), 1, LightPosition(windowWidth).data());
}

/// The view keeps the camera's aspect, to the right of the legend and centred vertically.
PictureView FindView(const Camera& camera, std::int32_t width, std::int32_t height,
                     std::int32_t strip) {
    const std::int32_t drawWidth = width - strip;
    const std::int32_t drawHeight = TruncateToI32(static_cast<double>(drawWidth) / camera.aspect);
    const std::int64_t below = (std::int64_t{height} - drawHeight) / 2;
    GLint subpixelBits = 0;
    glGetIntegerv(GL_SUBPIXEL_BITS, &subpixelBits);
    return {camera.transform, strip,      static_cast<GLint>(below),
            drawWidth,        drawHeight, subpixelBits};
}

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

/// Draws nothing with a shader that failed: fixed functions would take its place.
void DrawLayers(const ProcessModel& model, const StackUploads& uploads, const PictureView& view,
                const PictureTools& tools) {
    const ShaderProgram& shader = tools.surfaceShader;
    if (!shader.IsUsable()) {
        return;
    }
    const bool drawsAll = !tools.hidingRules || !shader.HiddenPartsMayBeLeftOut();
    std::optional<ChosenTriangles> chosen;
    if (!drawsAll && DrawsInSoftware()) {
        chosen = ChooseTriangles(model.stack, model.grid, view, *tools.hidingRules);
    }
    BareVector<std::uint32_t> drawn;
    for (std::size_t slot = 0; slot < model.stack.layers.size(); ++slot) {
        const Layer* layer = model.stack.layers[slot].get();
        const UploadedMesh* mesh = layer != nullptr ? FindMesh(uploads, *layer) : nullptr;
        if (mesh == nullptr) {
            continue;
        }
        // What lets nothing through replaces what is behind it.
        const bool blends = drawsAll || !IsOpaque(*layer);
        (blends ? glEnable : glDisable)(GL_BLEND);
        glUniform3fv(UniformLocation(shader, "color"), 1, layer->color.data());
        glUniform1f(UniformLocation(shader, "alpha"), layer->alpha);
        glBindVertexArray(mesh->VertexArray());
        if (chosen) {
            FindDrawnTriangles(*chosen, slot, drawn);
            DrawTriangles(drawn);
        } else {
            DrawMesh(*mesh);
        }
        glBindVertexArray(0);
        glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0);
    }
    glEnable(GL_BLEND);
}

void DrawMarkers(const ProcessModel& model, const StackUploads& uploads, const Camera& camera,
                 const ShaderProgram& shader) {
    if (!shader.IsUsable()) {
        return;
    }
    UseShader(shader, camera);
    glBindVertexArray(uploads.markerVertices.Array());
    glDrawArrays(GL_POINTS, 0, ShownMarkerCount(model.settings, uploads.markers));
    glBindVertexArray(0);
    glUseProgram(0);
}

}  // namespace

void RenderFrame(const ProcessModel& model, const StackUploads& uploads, const Camera& camera,
                 const PictureTools& tools, std::int32_t width, std::int32_t height) {
    UseShader(tools.surfaceShader, camera);
    SetLight(tools.surfaceShader, model.settings.windowWidth);
    glClearColor(1.0f, 1.0f, 1.0f, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);

    const std::int32_t strip = model.settings.showLegend ? legendStrip : 0;
    const PictureView view = FindView(camera, width, height, strip);
    glViewport(view.x, view.y, view.width, view.height);
    DrawLayers(model, uploads, view, tools);
    glUseProgram(0);

    if (model.settings.showHeights) {
        DrawMarkers(model, uploads, camera, tools.pointShader);
        DrawHeightLabels(model, uploads.markers, camera, tools.textFont);
    }
    DrawWidthLabel(model, camera, tools.textFont);
    if (model.settings.showLegend) {
        DrawLegend(model, tools.textFont, strip, height);
    }
}

}  // namespace zelmo
