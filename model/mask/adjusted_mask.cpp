#include "model/mask/adjusted_mask.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <limits>
#include <utility>

#include "model/grid/grid.h"
#include "model/mask/mask.h"
#include "model/mask/region.h"
#include "model/mask/region_union.h"

// Polygons grow in whole numbers, so that the result is the same everywhere: in parts of a cell
// that are small enough to be seen nowhere, and large enough to hold what single precision makes of
// a coordinate on a line of the grid.

namespace zelmo {

namespace {

using ClipperLib::cInt;

constexpr cInt unitsPerCell = 4096;
/// What only touches is not always told apart or joined by the polygon library. So polygons shrink
/// by this first, which opens walls and bridges without width, and then grow by twice as much, so
/// that those that touch overlap.
constexpr cInt overlap = 4;

cInt ToUnits(double position, double spacing) {
    const double units = std::floor(position / spacing * static_cast<double>(unitsPerCell) + 0.5);
    constexpr auto furthest = static_cast<double>(furthestUnit);
    return std::isnan(units) ? 0 : static_cast<cInt>(std::clamp(units, -furthest, furthest));
}

/// A line of the grid gets the position at which the mask is drawn there.
double ToMicrons(cInt units, const Grid& grid) {
    const cInt cell = units >> 12;
    const auto rest = static_cast<double>(units - cell * unitsPerCell) / unitsPerCell;
    const double line = cell >= 0 && cell < grid.columns
                            ? static_cast<double>(static_cast<float>(cell) * grid.spacing)
                            : static_cast<double>(cell) * static_cast<double>(grid.spacing);
    return line + rest * static_cast<double>(grid.spacing);
}

void MeasureBox(MaskPolygon& polygon) {
    polygon.minX = polygon.minY = std::numeric_limits<double>::infinity();
    polygon.maxX = polygon.maxY = -std::numeric_limits<double>::infinity();
    for (const MaskPoint& point : polygon.points) {
        polygon.minX = std::min(polygon.minX, point.x);
        polygon.minY = std::min(polygon.minY, point.y);
        polygon.maxX = std::max(polygon.maxX, point.x);
        polygon.maxY = std::max(polygon.maxY, point.y);
    }
}

void Move(MaskPolygon& polygon, const MaskAdjustment& adjustment) {
    for (MaskPoint& point : polygon.points) {
        point.x += static_cast<double>(adjustment.shiftX);
        point.y += static_cast<double>(adjustment.shiftY);
    }
    MeasureBox(polygon);
}

/// Whether the polygon can reach the grid, or the edge of one that does. Boxes that are no numbers
/// can.
bool ComesNear(const Grid& grid, const MaskPolygon& polygon, const MaskAdjustment& adjustment) {
    const auto x = static_cast<double>(adjustment.shiftX);
    const auto y = static_cast<double>(adjustment.shiftY);
    const double spacing = grid.spacing;
    const double reach = std::abs(static_cast<double>(adjustment.bias)) * mitreLimit + spacing;
    return !(polygon.maxX + x < -reach || polygon.maxY + y < -reach ||
             polygon.minX + x > grid.columns * spacing + reach ||
             polygon.minY + y > grid.rows * spacing + reach);
}

ClipperLib::Path PathOf(const MaskPolygon& polygon, double spacing) {
    ClipperLib::Path path;
    path.reserve(polygon.points.size());
    for (const MaskPoint& point : polygon.points) {
        path.emplace_back(ToUnits(point.x, spacing), ToUnits(point.y, spacing));
    }
    return path;
}

/// Several outlines as one polygon by the even-odd rule. The ways between them run there and back
/// along lines of the grid's directions, on which there and back cross a row at the same place.
MaskPolygon Chain(const ClipperLib::Paths& outlines, const Grid& grid) {
    MaskPolygon polygon;
    for (const ClipperLib::Path& outline : outlines) {
        const std::size_t first = polygon.points.size();
        for (const ClipperLib::IntPoint& point : outline) {
            polygon.points.push_back({ToMicrons(point.X, grid), ToMicrons(point.Y, grid)});
        }
        polygon.points.push_back(polygon.points[first]);
        if (first != 0) {
            const MaskPoint start = polygon.points[0];
            const MaskPoint corner{polygon.points[first].x, start.y};
            polygon.points.insert(polygon.points.begin() + static_cast<std::ptrdiff_t>(first),
                                  corner);
            polygon.points.push_back(corner);
            polygon.points.push_back(start);
        }
    }
    return polygon;
}

/// The regions of a polygon, grown by the overlap.
std::vector<Region> OverlappingRegions(const MaskPolygon& polygon, double spacing) {
    std::vector<Region> overlapping;
    for (const Region& region : RegionsOf({PathOf(polygon, spacing)})) {
        for (const Region& shrunk : RegionsOf(OffsetRegion(region, -overlap))) {
            std::ranges::move(GrowRegion(shrunk, 2 * overlap), std::back_inserter(overlapping));
        }
    }
    return overlapping;
}

std::vector<MaskPolygon> Grow(const Grid& grid, const std::vector<MaskPolygon>& drawn,
                              cInt offset) {
    std::vector<Region> regions;
    for (const MaskPolygon& polygon : drawn) {
        std::ranges::move(OverlappingRegions(polygon, grid.spacing), std::back_inserter(regions));
    }
    std::vector<MaskPolygon> grown;
    for (const Region& region : UniteRegions(std::move(regions))) {
        const ClipperLib::Paths outlines = OffsetRegion(region, offset - overlap);
        if (!outlines.empty()) {
            grown.push_back(Chain(outlines, grid));
            grown.back().layer = drawn[0].layer;
            grown.back().datatype = drawn[0].datatype;
        }
    }
    return grown;
}

}  // namespace

std::vector<MaskPolygon> AdjustMask(const Grid& grid, std::span<const MaskPolygon> polygons,
                                    std::span<const MaskLayer> mask,
                                    const MaskAdjustment& adjustment) {
    std::vector<MaskPolygon> adjusted;
    for (const MaskPolygon& polygon : polygons) {
        if (BelongsTo(mask, polygon) && ComesNear(grid, polygon, adjustment)) {
            adjusted.push_back(polygon);
        }
    }
    const cInt offset = ToUnits(adjustment.bias, grid.spacing);
    if (offset != 0) {
        adjusted = Grow(grid, adjusted, offset);
    }
    for (MaskPolygon& polygon : adjusted) {
        Move(polygon, adjustment);
    }
    return adjusted;
}

}  // namespace zelmo
