#pragma once

#include <cstdint>

#include "results/models/triangulation.h"

namespace zelmo {

/// Twice the area of a triangle: above 0 where its corners run counter-clockwise.
inline std::int64_t TwiceArea(const PlanePoint& a, const PlanePoint& b, const PlanePoint& c) {
    return (std::int64_t{b.x} - a.x) * (std::int64_t{c.y} - a.y) -
           (std::int64_t{b.y} - a.y) * (std::int64_t{c.x} - a.x);
}

/// Whether a point lies within the circle through a triangle, which runs counter-clockwise.
bool LiesInCircle(const PlanePoint& a, const PlanePoint& b, const PlanePoint& c,
                  const PlanePoint& point);

/// The points' indices in an order in which neighbours are near to each other, in rounds that each
/// cover the whole plane more densely: the order to insert them in.
std::vector<std::uint32_t> InsertionOrder(const std::vector<PlanePoint>& points);

}  // namespace zelmo
