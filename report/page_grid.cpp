#include "report/page_grid.h"

#include <algorithm>

#include "model/grid/grid.h"
#include "model/grid/places.h"
#include "model/grid/shown_window.h"
#include "model/process.h"

namespace zelmo {

namespace {

/// Every `step`-th of `count` cells from `first` on, and the last one.
std::vector<std::int32_t> EveryFew(std::int32_t first, std::int32_t count, std::int32_t step) {
    std::vector<std::int32_t> cells;
    for (std::int32_t i = 0; i < count - 1; i += step) {
        cells.push_back(first + i);
    }
    cells.push_back(first + count - 1);
    return cells;
}

}  // namespace

PageGrid ThinGrid(const Grid& grid, std::int32_t mostColumns) {
    const ShownWindow window = FindShownWindow(grid);
    if (window.cols == 0) {
        return {};
    }
    const std::int32_t gaps = std::max(mostColumns - 1, 1);
    const std::int32_t step = std::max((window.cols - 1 + gaps - 1) / gaps, 1);
    return {EveryFew(window.marginCols, window.cols, step),
            EveryFew(window.marginRows, window.rows, step)};
}

PagePositions FindPagePositions(const PageGrid& pageGrid, const Grid& grid,
                                const ProcessSettings& settings) {
    const Place corner = LocationWindow(settings).lowerLeft;
    PagePositions positions;
    for (const std::int32_t col : pageGrid.cols) {
        positions.x.push_back(PlaceOnLayout(grid, {static_cast<double>(col), 0.0}).x - corner.x);
    }
    for (const std::int32_t row : pageGrid.rows) {
        positions.y.push_back(PlaceOnLayout(grid, {0.0, static_cast<double>(row)}).y - corner.y);
    }
    return positions;
}

}  // namespace zelmo
