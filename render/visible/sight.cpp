#include "render/visible/sight.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace zelmo {

namespace {

/// The four numbers of a transform that make one clip coordinate.
struct ClipRow {
    double x, y, z, start;

    double At(double px, double py, double pz) const { return x * px + y * py + z * pz + start; }
};

ClipRow RowOf(const Matrix4& m, std::size_t row) {
    return {m[row], m[4 + row], m[8 + row], m[12 + row]};
}

/// Where the eye of a perspective transform stands: the point that is nowhere on the picture.
/// Not finite if the transform has none.
std::array<double, 3> FindEye(const Matrix4& transform) {
    const ClipRow a = RowOf(transform, 0);
    const ClipRow b = RowOf(transform, 1);
    const ClipRow c = RowOf(transform, 3);
    const double det = a.x * (b.y * c.z - b.z * c.y) - a.y * (b.x * c.z - b.z * c.x) +
                       a.z * (b.x * c.y - b.y * c.x);
    const auto solve = [&](double ClipRow::*p, double ClipRow::*q) {
        return a.*p * (b.*q * c.start - b.start * c.*q) - a.*q * (b.*p * c.start - b.start * c.*p) +
               a.start * (b.*p * c.*q - b.*q * c.*p);
    };
    return {-solve(&ClipRow::y, &ClipRow::z) / det, solve(&ClipRow::x, &ClipRow::z) / det,
            -solve(&ClipRow::x, &ClipRow::y) / det};
}

}  // namespace

bool ShowsWholeBox(const Matrix4& transform, const std::array<double, 3>& size, double lowest) {
    const ClipRow z = RowOf(transform, 2);
    const ClipRow w = RowOf(transform, 3);
    for (unsigned corner = 0; corner < 8; ++corner) {
        const double x = (corner & 1) != 0 ? size[0] : 0.0;
        const double y = (corner & 2) != 0 ? size[1] : 0.0;
        const double height = (corner & 4) != 0 ? size[2] : lowest;
        const double depth = z.At(x, y, height);
        const double distance = w.At(x, y, height) * 0.9999;
        if (!(distance > 0.0 && depth > -distance && depth < distance)) {
            return false;
        }
    }
    return true;
}

std::optional<Sight> FindSight(const LayerStack& stack, const PictureView& view) {
    const std::array<double, 3> eye = FindEye(view.transform);
    const double width = static_cast<double>(stack.spacing) * (stack.cols - 1);
    const double depth = static_cast<double>(stack.spacing) * (stack.rows - 1);
    const bool isInFront = std::isfinite(eye[2]) && eye[0] > 0.0 && eye[0] < width &&
                           eye[1] < -0.5 * width && stack.spacing > 0.0f;
    if (!isInFront || view.width <= 0 || view.height <= 0) {
        return std::nullopt;
    }
    // A length that fills a pixel at the front edge, and one that changes the last bit of a depth
    // of 24 bits at the back: depth is (a + b / distance) / 2.
    const ClipRow x = RowOf(view.transform, 0);
    const ClipRow z = RowOf(view.transform, 2);
    const ClipRow w = RowOf(view.transform, 3);
    const double front = w.At(eye[0], 0.0, 0.0);
    const double back = w.At(eye[0], depth, 0.0);
    const double pixel = 2.0 * std::max(front, back) / (std::abs(x.x) * view.width);
    const double slope = std::hypot(z.y, z.z) / std::hypot(w.y, w.z);
    const double scale = std::abs(z.At(eye[0], 0.0, 0.0) - slope * front);
    const double farthest = std::max(front, back);
    const double depthStep = 2.0 * farthest * farthest / (scale * 16777216.0);
    Sight sight;
    sight.eyeX = static_cast<float>(eye[0]);
    sight.eyeY = static_cast<float>(eye[1]);
    sight.eye.height = static_cast<float>(eye[2]);
    sight.eye.farthest = static_cast<float>(depth - eye[1]);
    sight.eye.sideways = static_cast<float>(std::max(eye[0], width - eye[0]));
    sight.eye.spacing = stack.spacing;
    sight.hidingDepth = static_cast<float>(std::max(pixel / 4.0, 1024.0 * depthStep));
    sight.edgeHidingDepth = static_cast<float>(std::max(4.0 * pixel, 1024.0 * depthStep));
    sight.margin = std::ldexp(1.0f, -std::clamp(view.subpixelBits, 0, 8));
    return sight.hidingDepth > 0.0f && std::isfinite(sight.edgeHidingDepth) ? std::optional(sight)
                                                                            : std::nullopt;
}

}  // namespace zelmo
