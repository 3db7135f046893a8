#include "results/drawn_point.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "model/grid/grid.h"
#include "model/grid/places.h"

namespace zelmo {

namespace {

/// The first of two neighbouring cells between which a coordinate lies, on a grid of `count`.
std::int32_t CellBefore(double coordinate, std::int32_t count) {
    const double last = std::max(count - 2, 0);
    return static_cast<std::int32_t>(std::clamp(std::floor(coordinate), 0.0, last));
}

}  // namespace

DrawnPoint::DrawnPoint(const Grid& grid, const GridPosition& position) {
    const std::int32_t col = CellBefore(position.col, grid.columns);
    const std::int32_t row = CellBefore(position.row, grid.rows);
    const double right = position.col - col;
    const double back = position.row - row;
    // A grid of a single row has no cell behind it, and no point is there.
    const auto cell = [&](std::int32_t dCol, std::int32_t dRow) {
        const std::int32_t c = std::min(col + dCol, grid.columns - 1);
        const std::int32_t r = std::min(row + dRow, grid.rows - 1);
        return static_cast<std::size_t>(r) * static_cast<std::size_t>(grid.columns) +
               static_cast<std::size_t>(c);
    };
    if (right + back <= 1.0) {
        corners_ = {cell(0, 0), cell(1, 0), cell(0, 1)};
        shares_ = {right, back};
    } else {
        corners_ = {cell(1, 1), cell(0, 1), cell(1, 0)};
        shares_ = {1.0 - right, 1.0 - back};
    }
}

double DrawnPoint::HeightOf(std::span<const float> surface) const {
    const double height = surface[corners_[0]];
    double rise = 0.0;
    for (std::size_t i = 0; i < shares_.size(); ++i) {
        // Where a corner has no share, its height does not count even if it is no number.
        rise += shares_[i] != 0.0
                    ? shares_[i] * (static_cast<double>(surface[corners_[i + 1]]) - height)
                    : 0.0;
    }
    return height + rise;
}

}  // namespace zelmo
