#pragma once

#include <array>
#include <optional>

#include "render/visible/layer_stack.h"
#include "render/visible/picture_view.h"
#include "render/visible/visible_lanes.h"

namespace zelmo {

/// Over the window of a stack: the eye, and how deep a thing must lie to be hidden for certain.
struct Sight {
    EyeRange eye;
    float eyeX = 0.0f;
    float eyeY = 0.0f;
    float hidingDepth = 0.0f;      ///< below the top of the layer that hides it
    float edgeHidingDepth = 0.0f;  ///< the same at the window's open edges
    float margin = 0.0f;           ///< pixels by which GL may place a triangle's corner elsewhere
};

/// Empty where the eye does not stand in front of the window.
std::optional<Sight> FindSight(const LayerStack& stack, const PictureView& view);

/// Whether the transform leaves all of a box between the near and the far plane.
bool ShowsWholeBox(const Matrix4& transform, const std::array<double, 3>& size, double lowest);

}  // namespace zelmo
