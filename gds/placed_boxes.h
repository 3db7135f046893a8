#pragma once

#include <cstdint>

#include "gds/placement.h"

// Boxes around shapes as they lie when their cells are placed. A box without anything in it is the
// empty one.

namespace zelmo {

/// Whether there is anything in a box that was widened from the empty one.
inline bool IsNothing(const GdsRect& box) {
    return box == GdsRect();
}

/// Widens `box` by a polygon's points under a placement without offset, moved by all offsets of a
/// range. Looks at the points only where the polygon's box could widen it.
void WidenByShape(GdsRect& box, const GdsBoundary& boundary, const LinearPart& linear,
                  const GdsRect& offsets);

/// The offsets that the instances of an array have in the frame in which its cell is placed: the
/// smallest box. Empty where there are no instances. Throws std::out_of_range("invalid vector
/// subscript") if the array has no points.
GdsRect OffsetsOf(const GdsAref& aref, const GdsTransform& parent, const LinearPart& linear);

/// How many instances an array has.
std::uint64_t InstancesOf(const GdsAref& aref);

}  // namespace zelmo
