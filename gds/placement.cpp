#include "gds/placement.h"

#include <algorithm>
#include <cmath>

#include "gds/coordinates.h"

namespace zelmo {

namespace {

constexpr std::uint16_t reflection = 0x8000;

LinearPart MakeLinearPart(std::uint16_t flip, double mag, double angle) {
    return {std::cos(angle), std::sin(angle), flip != 0 ? -1.0 : 1.0, mag};
}

template <typename Place>
GdsRect BoxOfCorners(const GdsRect& rect, Place place) {
    const GdsPoint corners[] = {{rect.xmin, rect.ymin},
                                {rect.xmin, rect.ymax},
                                {rect.xmax, rect.ymax},
                                {rect.xmax, rect.ymin}};
    GdsRect box;
    for (const GdsPoint corner : corners) {
        const GdsPoint placed = place(corner);
        box.xmin = std::min(box.xmin, placed.x);
        box.ymin = std::min(box.ymin, placed.y);
        box.xmax = std::max(box.xmax, placed.x);
        box.ymax = std::max(box.ymax, placed.y);
    }
    return box;
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

GdsPoint TurnPoint(GdsPoint point, const LinearPart& linear) {
    const double x = static_cast<double>(point.x);
    const double y = static_cast<double>(point.y) * linear.mirror;
    return {TruncateToI64((x * linear.cosine - y * linear.sine) * linear.mag),
            TruncateToI64((y * linear.cosine + x * linear.sine) * linear.mag)};
}

GdsPoint PlacePoint(GdsPoint point, const GdsTransform& transform, const LinearPart& linear) {
    const GdsPoint turned = TurnPoint(point, linear);
    return {SaturatingAdd(turned.x, transform.dx), SaturatingAdd(turned.y, transform.dy)};
}

GdsPoint TransformPoint(GdsPoint point, const GdsTransform& transform, bool inverse) {
    if (inverse) {
        return TurnPoint(ShiftBack(point, transform), InverseLinearPart(transform));
    }
    return PlacePoint(point, transform, LinearPartOf(transform));
}

GdsRect TransformRect(const GdsRect& rect, const GdsTransform& transform, bool inverse) {
    if (!inverse) {
        return PlaceRect(rect, transform, LinearPartOf(transform));
    }
    const LinearPart linear = InverseLinearPart(transform);
    return BoxOfCorners(
        rect, [&](GdsPoint corner) { return TurnPoint(ShiftBack(corner, transform), linear); });
}

GdsRect PlaceRect(const GdsRect& rect, const GdsTransform& transform, const LinearPart& linear) {
    return BoxOfCorners(rect,
                        [&](GdsPoint corner) { return PlacePoint(corner, transform, linear); });
}

void MergeRect(GdsRect& target, const GdsRect& rect) {
    target.xmin = std::min({target.xmin, rect.xmin, rect.xmax});
    target.ymin = std::min({target.ymin, rect.ymin, rect.ymax});
    target.xmax = std::max({target.xmax, rect.xmin, rect.xmax});
    target.ymax = std::max({target.ymax, rect.ymin, rect.ymax});
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
