#include "model/nearest_value.h"

#include <cmath>
#include <cstddef>

namespace zelmo {

namespace {

std::size_t CellIndex(std::int32_t cols, std::int32_t col, std::int32_t row) {
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(cols) +
           static_cast<std::size_t>(col);
}

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
void SearchRow(const ValuedColumns& valued, float spacing, std::int32_t col, std::int32_t row,
               std::int32_t dy, Candidate& best) {
    const auto consider = [&](std::int32_t x) {
        const Candidate candidate{OffsetLength(x - col, dy, spacing), x - col, dy, true};
        if (ComesBefore(candidate, best)) {
            best = candidate;
        }
        return candidate.distance;
    };
    const std::int32_t right = valued.atOrRight[CellIndex(valued.cols, col, row + dy)];
    if (right < valued.cols) {
        consider(right);
    }
    std::int32_t left = valued.atOrLeft[CellIndex(valued.cols, col, row + dy)];
    if (left < 0) {
        return;
    }
    // Far away, lengths of neighbouring cells can round to the same: then the left one comes first.
    const float distance = consider(left);
    while (left > 0) {
        left = valued.atOrLeft[CellIndex(valued.cols, left - 1, row + dy)];
        if (left < 0 || consider(left) != distance) {
            return;
        }
    }
}

}  // namespace

ValuedColumns FindValuedColumns(std::int32_t cols, std::int32_t rows,
                                std::span<const float> raster) {
    ValuedColumns valued;
    valued.cols = cols;
    valued.rows = rows;
    valued.atOrLeft.resize(raster.size());
    valued.atOrRight.resize(raster.size());
    for (std::int32_t row = 0; row < rows; ++row) {
        std::int32_t nearest = -1;
        for (std::int32_t col = 0; col < cols; ++col) {
            const std::size_t cell = CellIndex(cols, col, row);
            nearest = raster[cell] == 0.0f ? nearest : col;
            valued.atOrLeft[cell] = nearest;
        }
        nearest = cols;
        for (std::int32_t col = cols - 1; col >= 0; --col) {
            const std::size_t cell = CellIndex(cols, col, row);
            nearest = raster[cell] == 0.0f ? nearest : col;
            valued.atOrRight[cell] = nearest;
        }
    }
    return valued;
}

std::int64_t FindNearestValue(const ValuedColumns& valued, float spacing, std::int32_t col,
                              std::int32_t row) {
    Candidate best;
    for (std::int32_t d = 0; d < valued.rows; ++d) {
        if (best.found && OffsetLength(0, d, spacing) > best.distance) {
            break;
        }
        if (row - d >= 0) {
            SearchRow(valued, spacing, col, row, -d, best);
        }
        if (d > 0 && row + d < valued.rows) {
            SearchRow(valued, spacing, col, row, d, best);
        }
    }
    if (!best.found) {
        return -1;
    }
    return static_cast<std::int64_t>(CellIndex(valued.cols, col + best.dx, row + best.dy));
}

}  // namespace zelmo
