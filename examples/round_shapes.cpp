#include "examples/round_shapes.h"

#include <cmath>

namespace zelmo {

namespace {

constexpr double kPi = 3.141592653589793;
constexpr double kDegreesPerCorner = 3.0;

}  // namespace

GdsPoint Polar(double radius, double degrees) {
    const double angle = degrees * kPi / 180.0;
    return {std::llround(radius * std::cos(angle)), std::llround(radius * std::sin(angle))};
}

std::vector<GdsPoint> Arc(double radius, double fromDegrees, double toDegrees) {
    const double sweep = toDegrees - fromDegrees;
    const int pieces = static_cast<int>(std::ceil(std::fabs(sweep) / kDegreesPerCorner));
    std::vector<GdsPoint> points;
    for (int i = 0; i <= pieces; ++i) {
        points.push_back(Polar(radius, fromDegrees + sweep * i / pieces));
    }
    return points;
}

std::vector<GdsPoint> Circle(GdsPoint centre, double radius) {
    std::vector<GdsPoint> points = Arc(radius, 0.0, 360.0);
    points.pop_back();
    for (GdsPoint& point : points) {
        point.x += centre.x;
        point.y += centre.y;
    }
    return points;
}

std::vector<GdsPoint> RingSector(double innerRadius, double outerRadius, double fromDegrees,
                                 double toDegrees) {
    std::vector<GdsPoint> points = Arc(outerRadius, fromDegrees, toDegrees);
    const std::vector<GdsPoint> inner = Arc(innerRadius, toDegrees, fromDegrees);
    points.insert(points.end(), inner.begin(), inner.end());
    return points;
}

}  // namespace zelmo
