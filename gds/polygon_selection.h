#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "gds/gds_point.h"
#include "gds/placement.h"

namespace zelmo {

/// A polygon selected from the layout, in database units from the rectangle's lower left corner.
struct RawPolygon {
    std::vector<GdsPoint> points;
    std::uint16_t layer = 0;
};

/// What one extraction selects, and what it has found.
struct ExtractionScope {
    std::vector<RawPolygon> output;
    std::int64_t x0 = 0;  ///< the rectangle, in database units
    std::int64_t y0 = 0;
    std::int64_t x1 = 0;
    std::int64_t y1 = 0;
    std::int64_t minSize = 0;   ///< polygons whose placed box is lower or narrower are dropped
    std::uint64_t skipped = 0;  ///< polygons dropped for their size
    std::size_t limit = 10000000;
    std::size_t points = 0;  ///< of all selected polygons
    std::size_t pointLimit = 100000000;
    /// After so many visits of cells, those that would select nothing are told in advance.
    std::size_t patience = 50000;
    /// So many tests of placements and polygons are made; hierarchies that take more are made for
    /// nothing else.
    std::uint64_t effort = 500000000;
};

/// A cell under a placement.
struct PlacedCell {
    const GdsCell* cell = nullptr;
    GdsTransform transform;
};

/// Appends the polygons of a cell and of all below it whose boxes overlap the rectangle, relative
/// to the rectangle's lower left corner: a cell's own polygons, then those of its references, then
/// those of its arrays column by column. Returns 0, 2 as soon as `output` holds `limit`
/// polygons or more than `pointLimit` points, or 3 if `effort` does not suffice. The cells are
/// sized. Throws std::out_of_range if an array has no points.
std::uint32_t CollectCellPolygons(ExtractionScope& scope, const PlacedCell& placedCell);

}  // namespace zelmo
