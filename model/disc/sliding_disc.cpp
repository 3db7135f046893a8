#include "model/disc/sliding_disc.h"

#include <algorithm>

#include "model/grid/grid.h"

namespace zelmo {

namespace {

/// Adds `change` to the slope of the counts at the columns `firstCol` to firstCol + cols - 1. There
/// is no slope at column 0.
void ChangeSlope(std::vector<std::int32_t>& slopeChanges, std::int32_t firstCol,
                 std::int32_t change) {
    const auto cols = static_cast<std::int32_t>(slopeChanges.size());
    const std::int32_t first = std::max(firstCol, 1);
    const std::int32_t end = std::min(firstCol + cols, cols);
    if (first < end) {
        slopeChanges[static_cast<std::size_t>(first)] += change;
        if (end < cols) {
            slopeChanges[static_cast<std::size_t>(end)] -= change;
        }
    }
}

}  // namespace

SlidingDisc SelectSlidingDisc(const Grid& grid, float radius) {
    SlidingDisc disc;
    disc.cols = grid.columns;
    disc.rows = grid.rows;
    disc.inside = SelectDiscOffsets(grid, radius);
    disc.leaving = SelectLeavingOffsets(grid, radius);
    for (const std::vector<GridOffset>* list : {&disc.inside, &disc.leaving}) {
        for (const GridOffset& offset : *list) {
            disc.lowestDy = std::min(disc.lowestDy, offset.dy);
            disc.highestDy = std::max(disc.highestDy, offset.dy);
        }
    }
    disc.firstCells.assign(static_cast<std::size_t>(disc.highestDy - disc.lowestDy) + 1, 0);
    for (const GridOffset& offset : disc.inside) {
        if (offset.dx >= 0) {
            ++disc.firstCells[static_cast<std::size_t>(offset.dy - disc.lowestDy)];
        }
    }
    return disc;
}

bool IsCut(const SlidingDisc& disc, std::int32_t row) {
    return row + disc.lowestDy < 0 || row + disc.highestDy >= disc.rows;
}

// The cell that an offset leads to is in the grid over a range of columns. So the count is a line
// of few bends: they are noted first and summed up twice.
void CountCells(const SlidingDisc& disc, std::int32_t row, std::vector<std::int32_t>& counts) {
    counts.assign(static_cast<std::size_t>(disc.cols), 0);
    for (const GridOffset& offset : disc.leaving) {
        if (row + offset.dy >= 0 && row + offset.dy < disc.rows) {
            ChangeSlope(counts, -offset.dx, -1);
            ChangeSlope(counts, offset.dx + 1, 1);
        }
    }
    std::int32_t count = 0;
    for (std::int32_t dy = std::max(disc.lowestDy, -row);
         dy <= std::min(disc.highestDy, disc.rows - 1 - row); ++dy) {
        count += disc.firstCells[static_cast<std::size_t>(dy - disc.lowestDy)];
    }
    std::int32_t slope = 0;
    for (std::int32_t& entry : counts) {
        slope += entry;
        count += slope;
        entry = count;
    }
}

}  // namespace zelmo
