#include "gds/placement.h"

#include <algorithm>
#include <cmath>

#include "gds/coordinates.h"

namespace zelmo {

namespace {

LinearPart MakeLinearPart(std::uint16_t flip, double mag, double angle) {
    const double mirror = flip != 0 ? -1.0 : 1.0;
    if (angle == 0.0) {
        return {1.0, angle, mirror, mag};  // most are not turned; this keeps a negative zero, too
    }
    return {std::cos(angle), std::sin(angle), mirror, mag};
}

struct Range {
    std::int64_t least;
    std::int64_t greatest;
};

/// The coordinates that the four sums of one of `a` and one of `b` have when they are scaled.
Range ScaledSums(const double (&a)[2], const double (&b)[2], double mag) {
    const std::int64_t sums[] = {
        TruncateToI64((a[0] + b[0]) * mag), TruncateToI64((a[0] + b[1]) * mag),
        TruncateToI64((a[1] + b[0]) * mag), TruncateToI64((a[1] + b[1]) * mag)};
    return {std::min(std::min(sums[0], sums[1]), std::min(sums[2], sums[3])),
            std::max(std::max(sums[0], sums[1]), std::max(sums[2], sums[3]))};
}

/// Whether TurnPoint only mirrors, if at all, and gives the corners of the box exactly.
bool KeepsCorners(const GdsRect& rect, const LinearPart& linear) {
    constexpr std::int64_t exact = std::int64_t{1} << 53;
    const auto isExact = [](std::int64_t a, std::int64_t b) {
        return std::min(a, b) >= -exact && std::max(a, b) <= exact;
    };
    return linear.sine == 0.0 && linear.cosine == 1.0 && linear.mag == 1.0 &&
           isExact(rect.xmin, rect.xmax) && isExact(rect.ymin, rect.ymax);
}

/// The box of the four corners as TurnPoint turns them, which share their products.
GdsRect TurnCorners(const GdsRect& rect, const LinearPart& linear) {
    if (KeepsCorners(rect, linear)) {
        const std::int64_t sign = linear.mirror < 0.0 ? -1 : 1;
        const auto [xmin, xmax] = std::minmax(rect.xmin, rect.xmax);
        const auto [ymin, ymax] = std::minmax({sign * rect.ymin, sign * rect.ymax});
        return {xmin, ymin, xmax, ymax};
    }
    const double x[] = {static_cast<double>(rect.xmin), static_cast<double>(rect.xmax)};
    const double y[] = {static_cast<double>(rect.ymin) * linear.mirror,
                        static_cast<double>(rect.ymax) * linear.mirror};
    const Range across = ScaledSums({x[0] * linear.cosine, x[1] * linear.cosine},
                                    {-(y[0] * linear.sine), -(y[1] * linear.sine)}, linear.mag);
    const Range along = ScaledSums({y[0] * linear.cosine, y[1] * linear.cosine},
                                   {x[0] * linear.sine, x[1] * linear.sine}, linear.mag);
    return {across.least, along.least, across.greatest, along.greatest};
}

/// The part of a box that starts from the empty one: sides beyond 32 bits stay at the limit.
GdsRect WidenEmpty(const GdsRect& rect) {
    constexpr GdsRect empty;
    return {std::min(empty.xmin, rect.xmin), std::min(empty.ymin, rect.ymin),
            std::max(empty.xmax, rect.xmax), std::max(empty.ymax, rect.ymax)};
}

GdsPoint ShiftBack(GdsPoint point, const GdsTransform& transform) {
    return {SaturatingSubtract(point.x, transform.dx), SaturatingSubtract(point.y, transform.dy)};
}

LinearPart InverseLinearPart(const GdsTransform& transform) {
    return MakeLinearPart(transform.flip, 1.0 / transform.mag, -transform.angle);
}

}  // namespace

LinearPart LinearPartOf(const GdsTransform& transform) {
    return MakeLinearPart(transform.flip, transform.mag, transform.angle);
}

GdsRect TransformRect(const GdsRect& rect, const GdsTransform& transform, bool inverse) {
    if (!inverse) {
        return PlaceRect(rect, transform, LinearPartOf(transform));
    }
    const GdsPoint lower = ShiftBack({rect.xmin, rect.ymin}, transform);
    const GdsPoint upper = ShiftBack({rect.xmax, rect.ymax}, transform);
    return WidenEmpty(
        TurnCorners({lower.x, lower.y, upper.x, upper.y}, InverseLinearPart(transform)));
}

GdsRect PlaceRect(const GdsRect& rect, const GdsTransform& transform, const LinearPart& linear) {
    const GdsRect offset{transform.dx, transform.dy, transform.dx, transform.dy};
    return WidenEmpty(MoveRect(TurnCorners(rect, linear), offset));
}

GdsRect MoveRect(const GdsRect& rect, const GdsRect& offsets) {
    return {SaturatingAdd(rect.xmin, offsets.xmin), SaturatingAdd(rect.ymin, offsets.ymin),
            SaturatingAdd(rect.xmax, offsets.xmax), SaturatingAdd(rect.ymax, offsets.ymax)};
}

std::int64_t SmallerSide(const GdsRect& rect) {
    return std::min(SaturatingSubtract(rect.ymax, rect.ymin),
                    SaturatingSubtract(rect.xmax, rect.xmin));
}

GdsTransform PlaceChild(GdsPoint origin, double mag, double angle, std::uint16_t strans,
                        const GdsTransform& parent, const LinearPart& linear) {
    const GdsPoint offset = PlacePoint(origin, parent, linear);
    const auto flip = static_cast<std::uint16_t>((strans & reflection) ^ parent.flip);
    return {flip, offset.x, offset.y, parent.mag * mag, parent.angle + angle};
}

}  // namespace zelmo
