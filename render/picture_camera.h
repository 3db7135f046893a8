#pragma once

#include <array>

#include "render/mesh/matrix.h"
#include "render/mesh/side_walls.h"

namespace zelmo {

struct Camera;
struct ProcessSettings;
struct ViewDirection;

/// What lies to the right of who looks at the front edge.
constexpr std::array<float, 2> frontalRight{1.0f, 0.0f};

/// What a picture needs of a camera, the usual one or another.
struct PictureCamera {
    Matrix4 transform{};
    double aspect = 1.0;                        ///< width over height of the view
    bool isFrontal = true;                      ///< nothing is seen of the window's other sides
    WindowSides seen{};                         ///< of those
    double elevation = 0.0;                     ///< degrees above the horizon
    std::array<float, 2> right = frontalRight;  ///< what lies to the right, across the window
};

/// The camera that the process file sets.
PictureCamera FrontalCamera(const Camera& camera, const ProcessSettings& settings);

/// Looks at a window with a stack up to `top` micrometres from this direction. All of it is in the
/// view, with as much room at the sides as the usual camera leaves there.
PictureCamera CameraFrom(const ViewDirection& direction, const ProcessSettings& settings,
                         float top);

}  // namespace zelmo
