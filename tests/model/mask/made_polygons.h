#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "model/mask/mask_polygon.h"

// Polygons of masks that are made by hand, with their boxes.

namespace zelmo {

inline constexpr std::array maskOne{MaskLayer{1, std::nullopt}};

inline MaskPolygon MakePolygon(std::uint32_t layer, const std::vector<MaskPoint>& points) {
    MaskPolygon polygon;
    polygon.layer = layer;
    polygon.points = points;
    polygon.minX = polygon.maxX = points[0].x;
    polygon.minY = polygon.maxY = points[0].y;
    for (const MaskPoint& point : points) {
        polygon.minX = std::min(polygon.minX, point.x);
        polygon.maxX = std::max(polygon.maxX, point.x);
        polygon.minY = std::min(polygon.minY, point.y);
        polygon.maxY = std::max(polygon.maxY, point.y);
    }
    return polygon;
}

inline MaskPolygon MakeRectangle(std::uint32_t layer, double x0, double y0, double x1, double y1) {
    return MakePolygon(layer, {{x0, y0}, {x1, y0}, {x1, y1}, {x0, y1}});
}

}  // namespace zelmo
