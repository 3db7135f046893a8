#pragma once

#include <algorithm>
#include <cstdint>

#include "gds/coordinates.h"
#include "gds/gds_database.h"

// Placing points and boxes through references to cells. Arithmetic is in double precision, and
// every way back to integer coordinates truncates toward zero.

namespace zelmo {

/// The bit of an STRANS word that mirrors; the others have no effect.
constexpr std::uint16_t reflection = 0x8000;

/// The placement of a cell in the frame of the cell where a walk of the hierarchy started:
/// mirror in y, turn, scale, truncate, shift. The default is the identity.
struct GdsTransform {
    std::uint16_t flip = 0;  ///< 0 or `reflection`
    std::int64_t dx = 0;
    std::int64_t dy = 0;
    double mag = 1.0;
    double angle = 0.0;  ///< radians, counter-clockwise
};

/// The part of a placement before the shift, with its sine and cosine worked out. These are the
/// platform's; where two platforms differ in the last bits of one (at one angle in 250), a placed
/// coordinate shows it about once in 10^8.
struct LinearPart {
    double cosine = 1.0;
    double sine = 0.0;
    double mirror = 1.0;  ///< -1 where y is mirrored
    double mag = 1.0;
};

LinearPart LinearPartOf(const GdsTransform& transform);

/// The point mirrored, turned, scaled and truncated. Monotone in x for a fixed y and the other way
/// round, whatever the numbers are.
inline GdsPoint TurnPoint(GdsPoint point, const LinearPart& linear) {
    const double x = static_cast<double>(point.x);
    const double y = static_cast<double>(point.y) * linear.mirror;
    return {TruncateToI64((x * linear.cosine - y * linear.sine) * linear.mag),
            TruncateToI64((y * linear.cosine + x * linear.sine) * linear.mag)};
}

/// The same with the shift: forward through a transform whose linear part is at hand.
inline GdsPoint PlacePoint(GdsPoint point, const GdsTransform& transform,
                           const LinearPart& linear) {
    const GdsPoint turned = TurnPoint(point, linear);
    return {SaturatingAdd(turned.x, transform.dx), SaturatingAdd(turned.y, transform.dy)};
}

/// The box of the four corners, placed forward or back. The way back mirrors before it turns, as
/// the way forward does, and so undoes the placement only where `flip` or `angle` is 0. The box
/// starts from the empty one: what lies beyond 32 bits leaves a side at the limit.
GdsRect TransformRect(const GdsRect& rect, const GdsTransform& transform, bool inverse);
GdsRect PlaceRect(const GdsRect& rect, const GdsTransform& transform, const LinearPart& linear);

/// Widens `target` by `rect`.
inline void MergeRect(GdsRect& target, const GdsRect& rect) {
    target.xmin = std::min({target.xmin, rect.xmin, rect.xmax});
    target.ymin = std::min({target.ymin, rect.ymin, rect.ymax});
    target.xmax = std::max({target.xmax, rect.xmin, rect.xmax});
    target.ymax = std::max({target.ymax, rect.ymin, rect.ymax});
}

/// The box around a box at all offsets of a range.
GdsRect MoveRect(const GdsRect& rect, const GdsRect& offsets);

/// The lesser of a box's width and height.
std::int64_t SmallerSide(const GdsRect& rect);

/// The placement of a referenced cell from the reference's own and that of the cell it stands in.
/// Angles add, also in a mirrored cell. `linear` belongs to `parent`.
GdsTransform PlaceChild(GdsPoint origin, double mag, double angle, std::uint16_t strans,
                        const GdsTransform& parent, const LinearPart& linear);

}  // namespace zelmo
