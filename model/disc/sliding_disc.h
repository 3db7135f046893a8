#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "model/grid/neighbour_table.h"

// A disc that slides along the rows of the grid. At column 0 it holds its cells; at every column
// further right the cells on its left edge drop out and those on its right edge are taken in, so
// that the work for a cell grows with the disc's edge and not with its area. Cells outside the grid
// are left out, nothing is mirrored or padded. At single cells on the edge the two lists disagree:
// what the disc holds then is not quite a disc, and depends on the way that it has come.

namespace zelmo {

struct Grid;

struct SlidingDisc {
    std::int32_t cols = 0;  ///< of the grid
    std::int32_t rows = 0;
    std::vector<GridOffset> inside;   ///< SelectDiscOffsets
    std::vector<GridOffset> leaving;  ///< SelectLeavingOffsets
    std::int32_t lowestDy = 0;        ///< of both lists
    std::int32_t highestDy = 0;

    /// By dy - lowestDy: how many cells of that row the disc holds around a cell in column 0. They
    /// are the row's first.
    std::vector<std::int32_t> firstCells;
};

/// The disc of `radius` micrometres on a grid.
SlidingDisc SelectSlidingDisc(const Grid& grid, float radius);

/// Whether the disc reaches over the first or last row of the grid when it slides along `row`.
bool IsCut(const SlidingDisc& disc, std::int32_t row);

/// How many cells the disc holds at each column of `row`. The same in all rows that do not cut it.
void CountCells(const SlidingDisc& disc, std::int32_t row, std::vector<std::int32_t>& counts);

}  // namespace zelmo
