#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace zelmo {

/// The cells of a raster that have a value, row by row. A raster's value 0.0 stands for none.
struct ValuedCells {
    /// A row with such cells: their columns, ascending, are columns[begin] to columns[end - 1].
    struct Row {
        std::int32_t row = 0;
        std::size_t begin = 0;
        std::size_t end = 0;
    };

    std::int32_t cols = 0;
    std::vector<Row> rows;  ///< ascending; rows without such cells are left out
    std::vector<std::int32_t> columns;
};

ValuedCells FindValuedCells(std::int32_t cols, std::int32_t rows, std::span<const float> raster);

/// The index of the cell with a value that is nearest to (col, row), in the order of the neighbour
/// table for this `spacing`: of equally far ones the lowest row counts, then the leftmost column.
/// -1 if no cell has a value. Looks at two cells of a row, and only at rows near enough.
std::int64_t FindNearestValue(const ValuedCells& valued, float spacing, std::int32_t col,
                              std::int32_t row);

}  // namespace zelmo
