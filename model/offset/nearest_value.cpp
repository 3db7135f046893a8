#include "model/offset/nearest_value.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>

namespace zelmo {

namespace {

/// The length of a grid offset, with the roundings of the neighbour table.
float OffsetLength(std::int32_t dx, std::int32_t dy, float spacing) {
    return std::sqrt(static_cast<float>(dx * dx + dy * dy)) * spacing;
}

struct Candidate {
    float distance = 0.0f;
    std::int32_t dx = 0;
    std::int32_t dy = 0;
    bool found = false;
};

bool ComesBefore(const Candidate& a, const Candidate& b) {
    if (!b.found || a.distance != b.distance) {
        return !b.found || a.distance < b.distance;
    }
    return a.dy != b.dy ? a.dy < b.dy : a.dx < b.dx;
}

/// Takes the best cell of one row into account.
void SearchRow(const ValuedCells& valued, const ValuedCells::Row& cells, float spacing,
               std::int32_t col, std::int32_t row, Candidate& best) {
    const std::int32_t dy = cells.row - row;
    const auto consider = [&](std::int32_t x) {
        const Candidate candidate{OffsetLength(x - col, dy, spacing), x - col, dy, true};
        if (ComesBefore(candidate, best)) {
            best = candidate;
        }
        return candidate.distance;
    };
    const std::int32_t* begin = valued.columns.data() + cells.begin;
    const std::int32_t* end = valued.columns.data() + cells.end;
    const std::int32_t* right = std::lower_bound(begin, end, col);
    if (right != end) {
        consider(*right);
    }
    if (right == begin) {
        return;
    }
    // Far away, lengths of neighbouring cells can round to the same: then the left one comes first.
    const std::int32_t* left = right - 1;
    const float distance = consider(*left);
    while (left != begin && consider(*--left) == distance) {
    }
}

}  // namespace

ValuedCells FindValuedCells(std::int32_t cols, std::int32_t rows, std::span<const float> raster) {
    ValuedCells valued;
    valued.cols = cols;
    valued.columns.reserve(
        raster.size() - static_cast<std::size_t>(std::count(raster.begin(), raster.end(), 0.0f)));
    std::size_t cell = 0;
    for (std::int32_t row = 0; row < rows; ++row) {
        const std::size_t begin = valued.columns.size();
        for (std::int32_t col = 0; col < cols; ++col, ++cell) {
            if (raster[cell] != 0.0f) {
                valued.columns.push_back(col);
            }
        }
        if (valued.columns.size() > begin) {
            valued.rows.push_back({row, begin, valued.columns.size()});
        }
    }
    return valued;
}

// From the cell's own row outwards, up and down, until rows are farther away than the best cell.
std::int64_t FindNearestValue(const ValuedCells& valued, float spacing, std::int32_t col,
                              std::int32_t row) {
    Candidate best;
    const auto isNearEnough = [&](const ValuedCells::Row& cells) {
        return !best.found || OffsetLength(0, cells.row - row, spacing) <= best.distance;
    };
    const auto own = std::lower_bound(
        valued.rows.begin(), valued.rows.end(), row,
        [](const ValuedCells::Row& cells, std::int32_t value) { return cells.row < value; });
    auto above = own;
    auto below = std::make_reverse_iterator(own);
    bool anyNear = true;
    while (anyNear) {
        anyNear = false;
        if (above != valued.rows.end() && isNearEnough(*above)) {
            SearchRow(valued, *above++, spacing, col, row, best);
            anyNear = true;
        }
        if (below != valued.rows.rend() && isNearEnough(*below)) {
            SearchRow(valued, *below++, spacing, col, row, best);
            anyNear = true;
        }
    }
    if (!best.found) {
        return -1;
    }
    return static_cast<std::int64_t>(row + best.dy) * valued.cols + col + best.dx;
}

}  // namespace zelmo
