#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace zelmo {

/// Where the values of a raster stand in their rows: for each cell the nearest column with a value
/// at or left of it, -1 if there is none, and the nearest at or right of it, `cols` if there is
/// none. A raster's value 0.0 stands for none.
struct ValuedColumns {
    std::int32_t cols = 0;
    std::int32_t rows = 0;
    std::vector<std::int32_t> atOrLeft;
    std::vector<std::int32_t> atOrRight;
};

ValuedColumns FindValuedColumns(std::int32_t cols, std::int32_t rows,
                                std::span<const float> raster);

/// The index of the cell with a value that is nearest to (col, row), in the order of the neighbour
/// table for this `spacing`: of equally far ones the lowest row counts, then the leftmost column.
/// -1 if no cell has a value. Looks at two cells of each row, not at every cell around.
std::int64_t FindNearestValue(const ValuedColumns& valued, float spacing, std::int32_t col,
                              std::int32_t row);

}  // namespace zelmo
