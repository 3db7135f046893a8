#pragma once

#include <span>
#include <vector>

#include "model/mask/mask_layer.h"
#include "model/mask/mask_polygon.h"

namespace zelmo {

struct Grid;

/// The polygons of a mask, grown or shrunk on every side and then moved. What overlaps or touches
/// is grown as one: no seam opens where polygons abut. Corners stay corners up to the mitre limit.
/// A bias counts in steps of 1/4096 of the grid's spacing, and with it the polygons' corners. Those
/// that come nowhere near the grid are left out; the others are all on the layer of the first one.
std::vector<MaskPolygon> AdjustMask(const Grid& grid, std::span<const MaskPolygon> polygons,
                                    std::span<const MaskLayer> mask,
                                    const MaskAdjustment& adjustment);

}  // namespace zelmo
