#pragma once

#include "render/mesh/matrix.h"

namespace zelmo {

/// The view of a picture: from far in front of the window's front edge, above the stack, looking
/// down at an angle. World coordinates are micrometres with x across the window, y from its front
/// edge to its back, z up.
struct Camera {
    /// Width and height of the window and top of the stack in micrometres, angle in degrees.
    Camera(double width, double height, double top, double angle);

    double aspect = 0.0;  ///< width over height of the view
    bool fixedProjection = false;
    Matrix4 transform{};  ///< projection times view
    Matrix4 view{};
    Matrix4 projection{};
    Vector3 eye{};
    Vector3 up{};
    Vector3 centre{};
};

/// How many pixels of a picture a micrometre is across the window's front edge.
double PixelsPerMicron(const Camera& camera);

/// The height in micrometres below which two surfaces are not told apart at the far end of the
/// view, where the depth buffer is coarsest.
double LeastHeight(const Camera& camera);

/// The view matrix for an eye that looks at `centre`.
Matrix4 LookAt(const Vector3& eye, const Vector3& centre, const Vector3& up);

/// Height in pixels of a picture that is 1920 pixels wide: the camera's aspect, but at least 36
/// pixels a layer where there is a legend.
int PictureHeight(const Camera& camera, bool showLegend, int layerCount);

}  // namespace zelmo
