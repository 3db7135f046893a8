#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "gds/placement.h"
#include "gds/polygon_extraction.h"

namespace zelmo {

/// What one extraction selects, and what it has found.
struct ExtractionScope {
    ExtractionWindow window;
    ExtractionLimits limits;
    std::vector<RawPolygon> output{};
    std::size_t points = 0;     ///< of all polygons of the output
    std::uint64_t skipped = 0;  ///< polygons dropped for their size
};

/// A cell under a placement.
struct PlacedCell {
    const GdsCell* cell = nullptr;
    GdsTransform transform;
};

/// Appends the polygons of a cell and of all below it that the window selects: a cell's own
/// polygons, then those of its references, then those of its arrays column by column. Returns why
/// it has ended before the last one, if it has. The cells are sized. Throws
/// std::out_of_range("invalid vector subscript") if an array has no points.
std::optional<ExtractionRefusal> CollectCellPolygons(ExtractionScope& scope,
                                                     const PlacedCell& placedCell);

}  // namespace zelmo
