#pragma once

#include <array>
#include <cstdint>
#include <vector>

namespace zelmo {

/// A point of the plane with whole coordinates.
struct PlanePoint {
    std::int32_t x = 0;
    std::int32_t y = 0;

    bool operator==(const PlanePoint&) const = default;
};

/// Points and straight edges between them, which meet in points alone: no edge has a point within
/// it. No two points are equal. The first four are the corners of a rectangle that holds all the
/// others, counter-clockwise from its lower left; its area is above 0.
struct PlaneGraph {
    std::vector<PlanePoint> points;
    std::vector<std::array<std::uint32_t, 2>> edges;  ///< by the points' indices
};

/// Points by their indices, counter-clockwise.
using PlaneTriangle = std::array<std::uint32_t, 3>;

/// The constrained Delaunay triangulation of a graph's rectangle: it has all points and edges, and
/// no triangle without area. All is computed in whole numbers, so that it is the same everywhere.
/// Coordinates differ by less than 2^29.
std::vector<PlaneTriangle> Triangulate(const PlaneGraph& graph);

}  // namespace zelmo
