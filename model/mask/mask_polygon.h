#pragma once

#include <cstdint>
#include <vector>

namespace zelmo {

struct MaskPoint {
    double x = 0.0;
    double y = 0.0;

    bool operator==(const MaskPoint&) const = default;
};

/// A polygon of a mask in micrometres from the grid's corner, with its bounding box.
struct MaskPolygon {
    std::vector<MaskPoint> points;
    std::uint32_t layer = 0;     ///< GDS layer number
    std::uint32_t datatype = 0;  ///< of that layer
    double minX = 0.0;
    double minY = 0.0;
    double maxX = 0.0;
    double maxY = 0.0;

    bool operator==(const MaskPolygon&) const = default;
};

}  // namespace zelmo
