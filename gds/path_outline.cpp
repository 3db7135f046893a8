#include "gds/path_outline.h"

#include <cmath>
#include <cstddef>

#include "base/conversions.h"
#include "gds/coordinates.h"

namespace zelmo {

namespace {

/// The points with a * x + b * y + c = 0.
struct Line {
    double a = 0.0;
    double b = 0.0;
    double c = 0.0;
};

struct Vector {
    double x = 0.0;
    double y = 0.0;
};

Vector Difference(GdsPoint to, GdsPoint from) {
    return {static_cast<double>(SaturatingSubtract(to.x, from.x)),
            static_cast<double>(SaturatingSubtract(to.y, from.y))};
}

double Length(Vector v) {
    return std::sqrt(v.x * v.x + v.y * v.y);
}

double Determinant(const Line& first, const Line& second) {
    return second.b * first.a - second.a * first.b;
}

GdsPoint Intersection(const Line& first, const Line& second) {
    const double determinant = Determinant(first, second);
    const double x = (second.c * first.b - first.c * second.b) / determinant;
    const double y = (second.a * first.c - second.c * first.a) / determinant;
    return {TruncateToI64(x), TruncateToI64(y)};
}

GdsPoint Foot(GdsPoint point, const Line& line) {
    const double e = line.a * static_cast<double>(point.y) - line.b * static_cast<double>(point.x);
    const double determinant = -line.a * line.a - line.b * line.b;
    const double x = (e * line.b + line.c * line.a) / determinant;
    const double y = (line.c * line.b - e * line.a) / determinant;
    return {TruncateToI64(x), TruncateToI64(y)};
}

/// The lines along the two sides of a segment.
struct Sides {
    Line left;
    Line right;
};

/// False if the segment has no length.
bool OffsetLines(Sides& sides, GdsPoint from, GdsPoint to, double halfWidth) {
    const Vector step = Difference(to, from);
    if (step.x == 0.0 && step.y == 0.0) {
        return false;
    }
    const double c = static_cast<double>(from.y) * step.x - static_cast<double>(from.x) * step.y;
    const double d = Length(step) * halfWidth;
    sides.left = {step.y, -step.x, c + d};
    sides.right = {step.y, -step.x, c - d};
    return true;
}

/// Moves an end of the line outward.
void ExtendEnd(GdsPoint& end, GdsPoint inner, double extension) {
    const Vector outward = Difference(end, inner);
    const double length = Length(outward);
    if (length != 0.0) {
        const double scale = extension / length;
        end.x = SaturatingAdd(end.x, TruncateToI32(scale * outward.x));
        end.y = SaturatingAdd(end.y, TruncateToI32(scale * outward.y));
    }
}

/// The corner where two lines meet. False if they are parallel.
bool MitreCorner(GdsPoint& corner, const Line& before, const Line& after) {
    if (Determinant(before, after) == 0.0) {
        return false;
    }
    corner = Intersection(before, after);
    return true;
}

}  // namespace

bool AcceptsExtendedEnd(GdsPoint end, GdsPoint inner) {
    return end.x != inner.x || end.x != inner.y;
}

bool AreParallel(GdsPoint from, GdsPoint over, GdsPoint to) {
    const Vector before = Difference(over, from);
    const Vector after = Difference(to, over);
    return Determinant({before.y, -before.x, 0.0}, {after.y, -after.x, 0.0}) == 0.0;
}

bool ExpandPath(std::span<GdsPoint> out, std::span<const GdsPoint> points, std::uint32_t width,
                std::uint16_t pathType) {
    const std::size_t n = points.size();
    if (n < 2) {
        return false;
    }
    if (pathType != extendedEnds) {
        return ExpandCentreLine(out, points, width, {});
    }
    const double halfWidth = static_cast<double>(width) * 0.5;
    return AcceptsExtendedEnd(points[0], points[1]) &&
           AcceptsExtendedEnd(points[n - 1], points[n - 2]) &&
           ExpandCentreLine(out, points, width, {halfWidth, halfWidth});
}

bool ExpandCentreLine(std::span<GdsPoint> out, std::span<const GdsPoint> points,
                      std::uint32_t width, const PathExtensions& extensions) {
    const std::size_t n = points.size();
    const double halfWidth = static_cast<double>(width) * 0.5;
    GdsPoint start = points[0];
    GdsPoint end = points[n - 1];
    if (extensions.start != 0.0) {
        ExtendEnd(start, points[1], extensions.start);
    }
    if (extensions.end != 0.0) {
        ExtendEnd(end, points[n - 2], extensions.end);
    }
    Sides sides;
    if (!OffsetLines(sides, points[0], points[1], halfWidth)) {
        return false;
    }
    const std::size_t closing = 2 * n;
    out[0] = Foot(start, sides.left);
    out[closing - 1] = Foot(start, sides.right);
    out[closing] = out[0];
    for (std::size_t i = 1; i + 1 < n; ++i) {
        const Sides before = sides;
        if (!OffsetLines(sides, points[i], points[i + 1], halfWidth) ||
            !MitreCorner(out[i], before.left, sides.left) ||
            !MitreCorner(out[closing - 1 - i], before.right, sides.right)) {
            return false;
        }
    }
    out[n - 1] = Foot(end, sides.left);
    out[n] = Foot(end, sides.right);
    return true;
}

}  // namespace zelmo
