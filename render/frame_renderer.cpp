#include "render/frame_renderer.h"

#include <GL/glew.h>

#include <array>

#include "base/conversions.h"
#include "model/process_model.h"
#include "render/camera.h"
#include "render/gl/shader_program.h"
#include "render/layer_renderer.h"
#include "render/overlays.h"
#include "render/picture_camera.h"
#include "render/stack_uploads.h"

namespace zelmo {

namespace {

constexpr std::int32_t legendStrip = 320;
constexpr std::array<float, 3> lightColor{1.0f, 1.0f, 1.0f};

/// In front of the window at the distance of the camera, at 0.9 of that distance in height.
std::array<float, 3> LightPosition(float windowWidth) {
    return {windowWidth * 0.5f, -windowWidth * 4.0f, windowWidth * 0.9f * 4.0f};
}

/// Makes the shader current, with this transform.
void UseShader(const ShaderProgram& shader, const Matrix4& transform) {
    glUseProgram(shader.Program());
    glUniformMatrix4fv(shader.Uniform("transform"), 1, GL_FALSE, transform.data());
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

void DrawMarkers(const ProcessModel& model, const StackUploads& uploads, const Camera& camera,
                 const ShaderProgram& shader) {
    if (!shader.IsUsable()) {
        return;
    }
    UseShader(shader, camera.transform);
    glBindVertexArray(uploads.markerVertices.Array());
    glDrawArrays(GL_POINTS, 0, ShownMarkerCount(model.settings, uploads.markers));
    glBindVertexArray(0);
    glUseProgram(0);
}

}  // namespace

void UseSurfaceShader(const ShaderProgram& shader, const Matrix4& transform, float windowWidth,
                      const std::array<float, 2>& viewRight) {
    UseShader(shader, transform);
    glUniform3fv(shader.Uniform("lightColor"), 1, lightColor.data());
    glUniform3fv(shader.Uniform("lightPos"), 1, LightPosition(windowWidth).data());
    glUniform2fv(shader.Uniform("viewRight"), 1, viewRight.data());
}

void RenderFrame(const ProcessModel& model, const StackUploads& uploads, const Camera& camera,
                 const PictureTools& tools, std::int32_t width, std::int32_t height) {
    UseSurfaceShader(tools.surfaceShader, camera.transform, model.settings.windowWidth,
                     frontalRight);
    glClearColor(1.0f, 1.0f, 1.0f, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);

    const std::int32_t strip = model.settings.showLegend ? legendStrip : 0;
    const PictureView view = FindView(camera, width, height, strip);
    glViewport(view.x, view.y, view.width, view.height);
    LayerRenderer(model.stack, model.grid, uploads, tools.surfaceShader, view, tools.hidingRules)
        .Draw();
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
