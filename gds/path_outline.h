#pragma once

#include <cstdint>

#include "gds/gds_point.h"

namespace zelmo {

/// Turns a centre line of `n` points into a closed polygon of 2n + 1 points: up the left side,
/// down the right side, and back to the first point. Corners are mitred without limit; path type 2
/// extends both ends by half the width, every other type ends flush.
/// Returns 0, or 1 for a path that it refuses: fewer than two points, a repeated point, two
/// consecutive segments in parallel, or a type 2 end that fails its test.
std::int32_t ExpandPath(GdsPoint* out, const GdsPoint* points, std::int32_t n, std::uint32_t width,
                        std::uint16_t pathType);

}  // namespace zelmo
