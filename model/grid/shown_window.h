#pragma once

#include <cstddef>
#include <cstdint>

namespace zelmo {

struct Grid;

/// The part of a grid that pictures show: the location window, without the margin.
struct ShownWindow {
    std::int32_t marginCols = 0;
    std::int32_t marginRows = 0;
    std::int32_t cols = 0;  ///< both 0 where the margins leave nothing
    std::int32_t rows = 0;
    std::int32_t gridColumns = 0;

    /// The cell of the grid at a column and row of the window.
    std::size_t GridIndex(std::int32_t col, std::int32_t row) const {
        return static_cast<std::size_t>(row + marginRows) * static_cast<std::size_t>(gridColumns) +
               static_cast<std::size_t>(col + marginCols);
    }
};

/// The window of a grid of `columns` by `rows` cells without `marginCols` and `marginRows` cells on
/// each side.
ShownWindow FindShownWindow(std::int32_t columns, std::int32_t rows, std::int32_t marginCols,
                            std::int32_t marginRows);

/// The window of a grid without the whole cells of its margins.
ShownWindow FindShownWindow(const Grid& grid);

}  // namespace zelmo
