#pragma once

#include <cstddef>
#include <cstdint>

#include "base/lanes.h"
#include "model/grid/grid_offset.h"

namespace zelmo {

/// How many neighbouring rows are summed up at once.
constexpr std::int32_t rowsAtOnce = 32;

/// So many rows of a grid that is stored column by column. In every column the cells that the
/// offsets lead to from any of the rows can be read; those above and below the grid hold 0.
struct DiscRows {
    const double* cells = nullptr;  ///< column 0 of the first row
    std::ptrdiff_t stride = 0;      ///< from column to column
    std::int32_t cols = 0;
    const GridOffset* inside = nullptr;
    std::size_t insideCount = 0;
    const GridOffset* leaving = nullptr;
    std::size_t leavingCount = 0;
};

/// The sums over the disc around each cell of the rows, stored column by column: rowsAtOnce sums
/// for each. Every row's terms are added in the order of the lists.
ZELMO_DECLARE_LANE_KERNEL(void SumDiscs(const DiscRows& rows, double* sums))

}  // namespace zelmo
