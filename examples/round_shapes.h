#pragma once

#include <vector>

#include "gds/gds_point.h"

namespace zelmo {

/// The point at `radius` from the origin in the direction of `degrees`, counter-clockwise from x.
GdsPoint Polar(double radius, double degrees);

/// Points along an arc about the origin, both ends included, a corner every few degrees. Runs
/// clockwise where `toDegrees` is the smaller.
std::vector<GdsPoint> Arc(double radius, double fromDegrees, double toDegrees);

/// A full circle about `centre`.
std::vector<GdsPoint> Circle(GdsPoint centre, double radius);

/// The area between two radii and two directions.
std::vector<GdsPoint> RingSector(double innerRadius, double outerRadius, double fromDegrees,
                                 double toDegrees);

}  // namespace zelmo
