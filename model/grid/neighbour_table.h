#pragma once

#include <cstdint>
#include <vector>

#include "model/grid/grid.h"
#include "model/grid/grid_offset.h"

namespace zelmo {

/// Fills `table` with all (2 * rows - 1) * (2 * cols - 1) offsets of a grid, sorted by distance.
void BuildNeighbourTable(NeighbourTable& table, std::int32_t rows, std::int32_t cols,
                         float spacing);

/// Fills `grid.distanceIndex` from `grid.neighbours`: slot d holds the last table position whose
/// distance in cells truncates to d, or 0 where there is none.
void BuildDistanceIndex(Grid& grid);

/// The offsets within `radius` micrometres, in table order.
std::vector<GridOffset> SelectDiscOffsets(const Grid& grid, float radius);

/// The offsets that drop out of such a disc on its left side when it moves one column to the
/// right, in table order. (-dx - 1, dy) is the cell that enters on the right.
std::vector<GridOffset> SelectLeavingOffsets(const Grid& grid, float radius);

}  // namespace zelmo
