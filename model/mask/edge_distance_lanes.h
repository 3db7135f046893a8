#pragma once

#include <cstdint>

#include "base/lanes.h"

namespace zelmo {

/// Distances in the neighbour table of `count` squared distances in cells, at a pitch.
ZELMO_DECLARE_LANE_KERNEL(void TableDistances(float* distances, const std::int32_t* squared,
                                              std::int32_t count, float spacing))

/// Marks the cells of a row, but for its first, whose search in the neighbour table can begin
/// behind the entry of their distance, if it is the distance of the cell to their left that tells
/// where to begin: with a number that is not 0. In rows narrower than the lanes it marks all.
/// Returns whether there are any.
ZELMO_DECLARE_LANE_KERNEL(bool MarkLateSearches(std::int32_t* late, const float* distances,
                                                std::int32_t count, float spacing))

}  // namespace zelmo
