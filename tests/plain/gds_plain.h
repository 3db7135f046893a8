#pragma once

#include <cstdint>
#include <optional>
#include <unordered_map>
#include <vector>

#include "gds/gds_database.h"
#include "gds/placement.h"
#include "gds/polygon_selection.h"

// The geometry of layouts in its plainest form: recursive, sine and cosine afresh for every point,
// every instance of every array visited.

namespace zelmo {

GdsPoint TransformPointPlain(GdsPoint point, const GdsTransform& transform, bool inverse);
GdsRect TransformRectPlain(const GdsRect& rect, const GdsTransform& transform, bool inverse);

/// 2n + 1 points, or none if the path is refused.
std::vector<GdsPoint> ExpandPathPlain(const std::vector<GdsPoint>& points, std::uint32_t width,
                                      std::uint16_t pathType);

/// The boxes stored so far.
using PlainCellSizes = std::unordered_map<const GdsCell*, GdsRect>;

GdsRect ComputeCellBoundsPlain(PlainCellSizes& sizes, const GdsCell& cell,
                               const GdsTransform& transform);

/// Knows no limit but that of polygons. References lead to cells with stored boxes.
std::optional<ExtractionRefusal> CollectCellPolygonsPlain(ExtractionScope& scope,
                                                          const PlacedCell& placed);

}  // namespace zelmo
