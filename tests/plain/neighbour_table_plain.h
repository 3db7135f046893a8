#pragma once

#include <cstdint>
#include <vector>

#include "model/grid/neighbour_table.h"

namespace zelmo {

/// All offsets of the grid, made row by row and merge sorted by distance.
void BuildNeighbourTablePlain(NeighbourTable& table, std::int32_t rows, std::int32_t cols,
                              float spacing);

/// Bottom-up merge sort by distance that keeps the order of equal entries.
void SortNeighbourTablePlain(std::vector<NeighbourOffset>& entries);

/// The two selections by a walk over the whole table.
std::vector<GridOffset> SelectDiscOffsetsPlain(const Grid& grid, float radius);
std::vector<GridOffset> SelectLeavingOffsetsPlain(const Grid& grid, float radius);

}  // namespace zelmo
