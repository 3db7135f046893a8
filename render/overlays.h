#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include "render/camera.h"
#include "render/gl/text_font.h"

namespace zelmo {

struct HeightMarkers;
struct ProcessModel;
struct ProcessSettings;

/// Draws a text in black: its lower left corner stands at the pixel that `matrix` takes `position`
/// to in the current viewport, moved by the offsets. Nothing of the picture hides it.
void DrawTextAt(const std::string& text, const Matrix4& matrix, const Vector3& position,
                float xOffset, float yOffset, const GlFont& font);

/// A pixel of the current viewport as clip coordinates, -1 to 1.
std::pair<float, float> PixelToClip(float x, float y);

/// How many of the height markers are shown: all of them, or the front row where the view is flat.
std::int32_t ShownMarkerCount(const ProcessSettings& settings, const HeightMarkers& markers);

/// The height above the substrate's top at every marker that is shown, in units of 0.1 nm.
void DrawHeightLabels(const ProcessModel& model, const HeightMarkers& markers, const Camera& camera,
                      TextFont& textFont);

/// The width of the window, below the middle of its front edge.
void DrawWidthLabel(const ProcessModel& model, const Camera& camera, TextFont& textFont);

/// The colours and names of the layers, first layer lowest, in the `strip` pixels at the left of a
/// picture of `height` pixels. Leaves the viewport at the strip.
void DrawLegend(const ProcessModel& model, TextFont& textFont, std::int32_t strip,
                std::int32_t height);

}  // namespace zelmo
