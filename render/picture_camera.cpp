#include "render/picture_camera.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numbers>

#include "model/process_model.h"
#include "render/camera.h"
#include "render/picture_choice.h"

namespace zelmo {

namespace {

constexpr double room = 1.1;         // how much more than the stack a view shows
constexpr double widest = 5.0;       // views, width over height
constexpr double narrowest = 0.8;    // ditto
constexpr double eyeDistance = 4.5;  // from the middle, in sizes of what is seen
constexpr double depthRoom = 1.02;

using Point = std::array<double, 3>;

double Dot(const Point& a, const Point& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

/// The directions of a view: to its right, its top and to the eye.
struct Axes {
    Point right;
    Point up;
    Point toEye;
};

Axes AxesOf(const ViewDirection& direction) {
    const double azimuth = direction.azimuth * std::numbers::pi / 180.0;
    const double elevation = direction.elevation * std::numbers::pi / 180.0;
    const double sinA = std::sin(azimuth);
    const double cosA = std::cos(azimuth);
    const double sinE = std::sin(elevation);
    const double cosE = std::cos(elevation);
    return {
        {cosA, sinA, 0.0}, {-sinA * sinE, cosA * sinE, cosE}, {sinA * cosE, -cosA * cosE, sinE}};
}

struct Range {
    double low = std::numeric_limits<double>::max();
    double high = std::numeric_limits<double>::lowest();

    void Take(double value) {
        low = std::min(low, value);
        high = std::max(high, value);
    }
    double Middle() const { return (low + high) * 0.5; }
    double Length() const { return high - low; }
    void Scale(double factor) {
        const double half = Length() * 0.5 * factor;
        *this = {Middle() - half, Middle() + half};
    }
    void GrowTo(double length) {
        const double middle = Middle();
        const double half = std::max(Length(), length) * 0.5;
        *this = {middle - half, middle + half};
    }
};

/// What a view has to show, across, upwards and away from the eye. In perspective the first two
/// are slopes, else lengths.
struct Extent {
    Range x, y, away;
};

Extent FindExtent(const Axes& axes, const Point& size, const Point& middle, double distance,
                  bool isParallel) {
    Extent extent;
    for (unsigned corner = 0; corner < 8; ++corner) {
        const Point from{((corner & 1) != 0 ? size[0] : 0.0) - middle[0],
                         ((corner & 2) != 0 ? size[1] : 0.0) - middle[1],
                         ((corner & 4) != 0 ? size[2] : 0.0) - middle[2]};
        const double away = distance - Dot(axes.toEye, from);
        const double scale = isParallel ? 1.0 : 1.0 / away;
        extent.x.Take(Dot(axes.right, from) * scale);
        extent.y.Take(Dot(axes.up, from) * scale);
        extent.away.Take(away);
    }
    extent.x.Scale(room);
    extent.away.Scale(depthRoom);
    extent.y.GrowTo(extent.x.Length() / widest);
    extent.x.GrowTo(extent.y.Length() * narrowest);
    return extent;
}

/// Sets what a row of a transform makes of a point: the way along `axis`, plus `start`.
void SetRow(Matrix4& m, std::size_t row, const Point& axis, double start) {
    for (std::size_t i = 0; i < 3; ++i) {
        m[4 * i + row] = static_cast<float>(axis[i]);
    }
    m[12 + row] = static_cast<float>(start);
}

Point Times(const Point& p, double factor) {
    return {p[0] * factor, p[1] * factor, p[2] * factor};
}

Point Plus(const Point& a, const Point& b) {
    return {a[0] + b[0], a[1] + b[1], a[2] + b[2]};
}

Matrix4 ParallelTransform(const Axes& axes, const Point& eye, const Extent& extent) {
    Matrix4 m{};
    const auto set = [&](std::size_t row, const Point& axis, const Range& range) {
        const double factor = 2.0 / range.Length();
        SetRow(m, row, Times(axis, factor), -factor * (Dot(axis, eye) + range.Middle()));
    };
    set(0, axes.right, extent.x);
    set(1, axes.up, extent.y);
    set(2, Times(axes.toEye, -1.0), extent.away);
    m[15] = 1.0f;
    return m;
}

Matrix4 PerspectiveTransform(const Axes& axes, const Point& eye, const Extent& extent) {
    Matrix4 m{};
    const Point forward = Times(axes.toEye, -1.0);
    const auto set = [&](std::size_t row, const Point& axis, const Range& range) {
        const double factor = 2.0 / range.Length();
        const Point mixed = Plus(Times(axis, factor), Times(forward, -factor * range.Middle()));
        SetRow(m, row, mixed, -Dot(mixed, eye));
    };
    set(0, axes.right, extent.x);
    set(1, axes.up, extent.y);
    const double nearest = extent.away.low;
    const double farthest = extent.away.high;
    const double scale = (farthest + nearest) / (farthest - nearest);
    const Point depth = Times(forward, scale);
    SetRow(m, 2, depth, -Dot(depth, eye) - 2.0 * farthest * nearest / (farthest - nearest));
    SetRow(m, 3, forward, -Dot(forward, eye));
    return m;
}

/// Which walls face the eye. In a parallel view all of a wall does or none of it.
WindowSides SeenSides(const Axes& axes, const Point& eye, const Point& size, bool isParallel) {
    constexpr double least = 1e-9;
    if (isParallel) {
        return {axes.toEye[0]<-least, axes.toEye[0]> least, axes.toEye[1] > least};
    }
    return {eye[0]<0.0, eye[0]> size[0], eye[1] > size[1]};
}

}  // namespace

PictureCamera FrontalCamera(const Camera& camera, const ProcessSettings& settings) {
    return {camera.transform, camera.aspect, true, {}, static_cast<double>(settings.cameraAngle)};
}

PictureCamera CameraFrom(const ViewDirection& direction, const ProcessSettings& settings,
                         float top) {
    const Axes axes = AxesOf(direction);
    const Point size{static_cast<double>(settings.windowWidth),
                     static_cast<double>(settings.windowHeight), static_cast<double>(top)};
    const Point middle = Times(size, 0.5);
    const double distance = eyeDistance * std::max({size[0], size[1], size[2]});
    const Point eye = Plus(middle, Times(axes.toEye, distance));
    const Extent extent = FindExtent(axes, size, middle, distance, direction.isParallel);
    PictureCamera camera;
    camera.transform = direction.isParallel ? ParallelTransform(axes, eye, extent)
                                            : PerspectiveTransform(axes, eye, extent);
    camera.aspect = extent.x.Length() / extent.y.Length();
    camera.isFrontal = false;
    camera.right = {static_cast<float>(axes.right[0]), static_cast<float>(axes.right[1])};
    camera.seen = SeenSides(axes, eye, size, direction.isParallel);
    camera.elevation = direction.elevation;
    return camera;
}

}  // namespace zelmo
