#pragma once

#include <cstddef>
#include <cstdint>

#include "base/lanes.h"
#include "model/grid/grid_offset.h"

namespace zelmo {

/// How many neighbouring rows are summed up at once.
constexpr std::int32_t discBandRows = 32;

/// A band of rows in a grid that is stored column by column. In every column the cells that the
/// offsets lead to from any row of the band can be read; those above and below the grid hold 0.
struct DiscBand {
    const double* cells = nullptr;  ///< column 0 of the band's first row
    std::ptrdiff_t stride = 0;      ///< from column to column
    std::int32_t cols = 0;
    const GridOffset* inside = nullptr;
    std::size_t insideCount = 0;
    const GridOffset* leaving = nullptr;
    std::size_t leavingCount = 0;
};

/// The sums over the disc around each cell of the band, stored column by column: discBandRows sums
/// for each. Every row's terms are added in the order of the lists.
ZELMO_DECLARE_LANE_KERNEL(void SumDiscBand(const DiscBand& band, double* sums))

}  // namespace zelmo
