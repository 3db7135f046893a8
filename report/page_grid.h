#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace zelmo {

struct Grid;
struct ProcessSettings;

/// The columns and rows of the grid that a page has, from the left and from the front.
struct PageGrid {
    std::vector<std::int32_t> cols;
    std::vector<std::int32_t> rows;

    std::size_t CellCount() const { return cols.size() * rows.size(); }

    bool operator==(const PageGrid&) const = default;
};

/// Of what pictures show, every k-th column and row and the last ones, with the least k that gives
/// no more columns than `mostColumns`, which is 2 or more. Both lists are empty where pictures show
/// nothing.
PageGrid ThinGrid(const Grid& grid, std::int32_t mostColumns);

/// Where these columns and rows lie, in micrometres from the window's lower left corner. The first
/// and the last can lie beyond its edges, by less than a cell of the grid.
struct PagePositions {
    std::vector<double> x;
    std::vector<double> y;
};
PagePositions FindPagePositions(const PageGrid& pageGrid, const Grid& grid,
                                const ProcessSettings& settings);

}  // namespace zelmo
