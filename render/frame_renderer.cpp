#include "render/frame_renderer.h"

#include <GL/glew.h>

#include <array>

#include "model/conversions.h"
#include "model/process_model.h"
#include "render/camera.h"
#include "render/overlays.h"
#include "render/shader_program.h"

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
void SetViewport(const Camera& camera, std::int32_t width, std::int32_t height,
                 std::int32_t strip) {
    const std::int32_t drawWidth = width - strip;
    const std::int32_t drawHeight = TruncateToI32(static_cast<double>(drawWidth) / camera.aspect);
    const std::int64_t below = (std::int64_t{height} - drawHeight) / 2;
    glViewport(strip, static_cast<GLint>(below), drawWidth, drawHeight);
}

void DrawLayer(const Layer& layer, const ShaderProgram& shader) {
    glUniform3fv(UniformLocation(shader, "color"), 1, layer.color.data());
    glUniform1f(UniformLocation(shader, "alpha"), layer.alpha);
    glBindVertexArray(layer.vertexArray);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, layer.indexBuffer);
    glDrawElements(GL_TRIANGLES, layer.indexCount, GL_UNSIGNED_INT, nullptr);
    glBindVertexArray(0);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0);
}

/// Draws nothing with a shader that failed: fixed functions would take its place.
void DrawLayers(const ProcessModel& model, const ShaderProgram& shader) {
    if (!shader.IsUsable()) {
        return;
    }
    for (const std::unique_ptr<Layer>& layer : model.layers) {
        if (layer != nullptr) {
            DrawLayer(*layer, shader);
        }
    }
}

void DrawMarkers(const ProcessModel& model, const Camera& camera, const ShaderProgram& shader) {
    if (!shader.IsUsable()) {
        return;
    }
    UseShader(shader, camera);
    glBindVertexArray(model.heightMarkers.vertexArray);
    glDrawArrays(GL_POINTS, 0, ShownMarkerCount(model));
    glBindVertexArray(0);
    glUseProgram(0);
}

}  // namespace

void RenderFrame(const ProcessModel& model, const Camera& camera, const PictureTools& tools,
                 std::int32_t width, std::int32_t height) {
    UseShader(tools.surfaceShader, camera);
    SetLight(tools.surfaceShader, model.windowWidth);
    glClearColor(1.0f, 1.0f, 1.0f, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);

    const std::int32_t strip = model.showLegend != 0.0f ? legendStrip : 0;
    SetViewport(camera, width, height, strip);
    DrawLayers(model, tools.surfaceShader);
    glUseProgram(0);

    if (model.showHeights != 0.0f) {
        DrawMarkers(model, camera, tools.pointShader);
        DrawHeightLabels(model, camera, tools.textFont);
    }
    DrawWidthLabel(model, camera, tools.textFont);
    if (model.showLegend != 0.0f) {
        DrawLegend(model, tools.textFont, strip, height);
    }
}

}  // namespace zelmo
