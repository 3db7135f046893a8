#include "render/overlays.h"

#include <GL/glew.h>

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

#include "model/process_model.h"
#include "render/height_markers.h"
#include "render/picture_texts.h"

namespace zelmo {

namespace {

constexpr std::int32_t markersInFrontRow = 10;
constexpr float flatAngle = 15.0f;  // below this only the front row of markers is shown

constexpr std::int32_t legendRowPitch = 36;
constexpr float legendSwatchWidth = 72.0f;
constexpr std::int32_t legendTextStart = 77;

std::array<GLint, 4> CurrentViewport() {
    std::array<GLint, 4> viewport{};
    glGetIntegerv(GL_VIEWPORT, viewport.data());
    return viewport;
}

/// Draws a text in black with its lower left corner at this pixel of the picture; without a font,
/// nothing.
void DrawTextAtPixel(const std::string& text, float x, float y, const GlFont& font) {
    if (font.listBase == 0) {
        return;
    }
    glColor4f(0.0f, 0.0f, 0.0f, 1.0f);
    glWindowPos2f(x, y);
    glListBase(font.listBase);
    glCallLists(static_cast<GLsizei>(text.size()), GL_UNSIGNED_BYTE, text.data());
}

/// How far to the left a text starts whose middle is to be at 0, by the font's average width.
float CentringOffset(const std::string& text, const GlFont& font) {
    return -1.0f * static_cast<float>(font.averageWidth) * static_cast<float>(text.size()) * 0.5f;
}

void DrawSwatch(const Layer& layer, float y0, float y1) {
    const std::array<std::pair<float, float>, 4> corners{
        PixelToClip(0.0f, y0), PixelToClip(0.0f, y1), PixelToClip(legendSwatchWidth, y1),
        PixelToClip(legendSwatchWidth, y0)};
    glUseProgram(0);
    glBegin(GL_QUADS);
    glColor4f(layer.color[0], layer.color[1], layer.color[2], layer.alpha);
    for (const auto& [x, y] : corners) {
        glVertex2f(x, y);
    }
    glEnd();
}

}  // namespace

void DrawTextAt(const std::string& text, const Matrix4& matrix, const Vector3& position,
                float xOffset, float yOffset, const GlFont& font) {
    const Matrix4& m = matrix;
    const auto& [x, y, z] = position;
    float cx = m[0] * x + m[4] * y + m[8] * z + m[12];
    float cy = m[1] * x + m[5] * y + m[9] * z + m[13];
    const float cw = m[3] * x + m[7] * y + m[11] * z + m[15];
    if (cw != 0.0f && cw != 1.0f) {
        cx /= cw;
        cy /= cw;
    }
    const std::array<GLint, 4> viewport = CurrentViewport();
    const float px =
        (cx + 1.0f) * static_cast<float>(viewport[2]) * 0.5f + static_cast<float>(viewport[0]);
    const float py =
        (cy + 1.0f) * static_cast<float>(viewport[3]) * 0.5f + static_cast<float>(viewport[1]);
    glUseProgram(0);
    DrawTextAtPixel(text, px + xOffset, py + yOffset, font);
}

std::pair<float, float> PixelToClip(float x, float y) {
    const std::array<GLint, 4> viewport = CurrentViewport();
    return {2.0f * x / static_cast<float>(viewport[2]) - 1.0f,
            2.0f * y / static_cast<float>(viewport[3]) - 1.0f};
}

std::int32_t ShownMarkerCount(const ProcessSettings& settings, const HeightMarkers& markers) {
    const auto count = static_cast<std::int32_t>(markers.vertices.size());
    return flatAngle > settings.cameraAngle ? std::min(count, markersInFrontRow) : count;
}

void DrawHeightLabels(const ProcessModel& model, const HeightMarkers& markers, const Camera& camera,
                      TextFont& textFont) {
    const std::int32_t count = ShownMarkerCount(model.settings, markers);
    for (std::int32_t k = 0; k < count; ++k) {
        const MarkerVertex& marker = markers.vertices[static_cast<std::size_t>(k)];
        const Vector3 position{marker.position[0], marker.position[1], marker.position[2]};
        const std::string text = HeightText(position[2] - model.stack.substrateThickness);
        const GlFont font = textFont.GetFont(24, 900);
        DrawTextAt(text, camera.transform, position, CentringOffset(text, font),
                   static_cast<float>(font.height) * 0.5f, font);
    }
}

void DrawWidthLabel(const ProcessModel& model, const Camera& camera, TextFont& textFont) {
    const std::string text = WidthText(model.settings.windowWidth);
    const GlFont font = textFont.GetFont(32, 700);
    DrawTextAt(text, camera.transform, {model.settings.windowWidth * 0.5f, 0.0f, 0.0f},
               CentringOffset(text, font), -1.0f * static_cast<float>(font.height) - 1.0f, font);
}

void DrawLegend(const ProcessModel& model, TextFont& textFont, std::int32_t strip,
                std::int32_t height) {
    const GlFont font = textFont.GetFont(30, 700);
    const std::int32_t maxChars = font.averageWidth > 0
                                      ? (strip - legendTextStart) / font.averageWidth
                                      : std::numeric_limits<std::int32_t>::max();
    glViewport(0, 0, strip, height);
    const std::int64_t fullHeight = std::int64_t{model.stack.layerCount} * legendRowPitch;
    const float scale =
        fullHeight > height ? static_cast<float>(height) / static_cast<float>(fullHeight) : 1.0f;
    std::int32_t row = 0;
    for (const std::unique_ptr<Layer>& layer : model.stack.layers) {
        if (layer == nullptr) {
            continue;
        }
        const float y0 = static_cast<float>(row) * scale;
        const float y1 = static_cast<float>(row + legendRowPitch) * scale;
        DrawSwatch(*layer, y0, y1);
        DrawTextAtPixel(LegendText(layer->label, maxChars), static_cast<float>(legendTextStart),
                        y0 + 2.0f, font);
        row += legendRowPitch;
    }
}

}  // namespace zelmo
