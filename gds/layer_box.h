#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>

#include "gds/gds_database.h"
#include "gds/polygon_extraction.h"

namespace zelmo {

/// The box around some of a cell's polygons, if there are any, or why the search ended.
struct LayerBox {
    std::optional<GdsRect> box;  ///< in database units
    std::optional<ExtractionRefusal> refusal;
};

/// The box around all polygons of chosen layers in the first cell of that name and in all below it.
/// Those without width or height draw nothing and do not count. Goes as far as an extraction does.
/// Throws std::out_of_range("invalid vector subscript") if an array has no points.
LayerBox FindLayerBox(const GdsDatabase& database, std::string_view cellName,
                      const std::function<bool(const RawPolygon&)>& isChosen,
                      ExtractionLimits limits = {});

}  // namespace zelmo
