#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "render/slide/slide_layout.h"

namespace zelmo {

/// An edge of the box around a stack that lies on its outline in a picture: nothing of the box is
/// beyond it.
struct OutlineEdge {
    Vector3 from{};  ///< micrometres
    Vector3 to{};
    PixelPoint outward;   ///< away from the box, of length 1
    double length = 0.0;  ///< pixels
};

/// The edge along an axis (0: x, 1: y, 2: height) beside which its length can be told. Of those
/// along x and y that is the lowest on the picture, of two the left one along x and the right one
/// along y; of the upright ones that furthest to the left. `size` is the box's. Nothing where the
/// axis points at the eye, or no edge is on the outline.
std::optional<OutlineEdge> FindOutlineEdge(const Projector& projector, const Vector3& size,
                                           std::size_t axis);

/// A bar beside an edge, as long on the picture as it says at that edge.
struct ScaleBar {
    PixelPoint from;
    PixelPoint to;
    PixelPoint outward;
    std::string text;  ///< "x: 2 um"
};

/// Bars of round lengths, for x, y and height; none for an axis of which too little is seen.
/// `unit` is that of the picture's layout.
std::vector<ScaleBar> FindScaleBars(const Projector& projector, const Vector3& size, double unit);

}  // namespace zelmo
