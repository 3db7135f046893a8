#pragma once

#include <cstdint>
#include <span>

#include "gds/gds_point.h"

namespace zelmo {

/// Path types of the stream format. Every number but that of extended ends gives flush ends.
constexpr std::uint16_t roundEnds = 1;
constexpr std::uint16_t extendedEnds = 2;
constexpr std::uint16_t variableEnds = 4;

/// Turns a centre line of n points into a closed polygon of 2n + 1 points: up the left side, down
/// the right side, and back to the first point. Corners are mitred without limit; extended ends
/// reach further by half the width.
/// False for a path that it refuses: fewer than two points, a repeated point, two consecutive
/// segments in parallel, or an extended end that fails its test. `out` has room for the polygon,
/// and is then left in any state.
[[nodiscard]] bool ExpandPath(std::span<GdsPoint> out, std::span<const GdsPoint> points,
                              std::uint32_t width, std::uint16_t pathType);

/// How far a path reaches beyond its first and its last point, in database units.
struct PathExtensions {
    double start = 0.0;
    double end = 0.0;
};

/// The same with any extensions, and without a test of its ends. At least two points.
[[nodiscard]] bool ExpandCentreLine(std::span<GdsPoint> out, std::span<const GdsPoint> points,
                                    std::uint32_t width, const PathExtensions& extensions);

/// The test of an extended end, `inner` being the point next to it. It compares an x with a y, so
/// that it is not one of equal points.
bool AcceptsExtendedEnd(GdsPoint end, GdsPoint inner);

/// Whether two segments that follow each other are in parallel, so that no corner can be mitred.
bool AreParallel(GdsPoint from, GdsPoint over, GdsPoint to);

}  // namespace zelmo
