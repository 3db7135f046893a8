#include "model/offset/missing_cells.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <optional>
#include <vector>

#include "model/offset/nearest_value.h"

// Results are reproduced to the bit: the order of every sum and product here is part of them.

namespace zelmo {

namespace {

constexpr float missing = 0.0f;
constexpr std::int32_t nowhere = -1;

struct Raster {
    std::int32_t cols = 0;
    std::int32_t rows = 0;
    float spacing = 0.0f;
    std::span<float> heights;

    std::size_t Index(std::int32_t col, std::int32_t row) const {
        return static_cast<std::size_t>(row) * static_cast<std::size_t>(cols) +
               static_cast<std::size_t>(col);
    }
    float At(std::int32_t col, std::int32_t row) const { return heights[Index(col, row)]; }
};

/// The first two cells with a value in one direction, as columns of a row or rows of a column. A
/// walk the other way keeps them up to date.
struct NearestTwo {
    std::int32_t first = nowhere;
    std::int32_t second = nowhere;

    void Pass(std::int32_t position, bool hasValue) {
        second = hasValue ? first : second;
        first = hasValue ? position : first;
    }
};

struct MissingCell {
    std::int32_t col = 0;
    std::int32_t row = 0;
    NearestTwo above;
    NearestTwo right;
    float value = missing;
};

struct CellPosition {
    std::int32_t col = 0;
    std::int32_t row = 0;
};

float DistanceBetween(float spacing, const CellPosition& a, const CellPosition& b) {
    const float dx = static_cast<float>(b.col) * spacing - static_cast<float>(a.col) * spacing;
    const float dy = static_cast<float>(b.row) * spacing - static_cast<float>(a.row) * spacing;
    return std::sqrt(dy * dy + dx * dx);
}

/// What lies in one direction: the value continued to the cell, and the distance to the first cell
/// with a value in micrometres.
struct LineHit {
    float value = 0.0f;
    float distance = 0.0f;
    bool found = false;
};

/// Continues the line through the two cells, if there are two, to the start. `positionOf` says
/// where they are.
template <typename PositionOf>
LineHit ContinueLine(const Raster& raster, const MissingCell& cell, const NearestTwo& nearest,
                     PositionOf positionOf) {
    LineHit hit;
    if (nearest.first == nowhere) {
        return hit;
    }
    const CellPosition start{cell.col, cell.row};
    const CellPosition first = positionOf(nearest.first);
    hit.found = true;
    hit.value = raster.At(first.col, first.row);
    hit.distance = DistanceBetween(raster.spacing, start, first);
    if (nearest.second != nowhere) {
        const CellPosition second = positionOf(nearest.second);
        const float value = raster.At(second.col, second.row);
        const float ratio = DistanceBetween(raster.spacing, start, second) /
                            DistanceBetween(raster.spacing, first, second);
        hit.value = value - ratio * (value - hit.value);
    }
    return hit;
}

/// The mean of the hits at the smallest distance. Not found where no hit is.
LineHit MeanOfNearest(const std::array<LineHit, 4>& hits) {
    constexpr float none = std::numeric_limits<float>::max();
    float nearest = none;
    for (const LineHit& hit : hits) {
        if (hit.found && hit.distance < nearest) {
            nearest = hit.distance;
        }
    }
    if (nearest == none) {
        return {};
    }
    float sum = 0.0f;
    std::int32_t count = 0;
    for (const LineHit& hit : hits) {
        if (hit.found && hit.distance == nearest) {
            sum += hit.value;
            ++count;
        }
    }
    return {sum / static_cast<float>(count), nearest, true};
}

std::vector<MissingCell> FindMissingCells(const Raster& raster) {
    std::vector<MissingCell> cells;
    cells.reserve(static_cast<std::size_t>(
        std::count(raster.heights.begin(), raster.heights.end(), missing)));
    for (std::int32_t row = 0; row < raster.rows && cells.size() < cells.capacity(); ++row) {
        for (std::int32_t col = 0; col < raster.cols; ++col) {
            if (raster.At(col, row) == missing) {
                cells.push_back({col, row, {}, {}, missing});
            }
        }
    }
    return cells;
}

/// What a walk along the rows has passed in each column.
class PassedRows {
public:
    explicit PassedRows(std::int32_t cols)
        : first_(static_cast<std::size_t>(cols), nowhere), second_(first_) {}

    void Pass(const Raster& raster, std::int32_t row) {
        const float* heights = &raster.heights[raster.Index(0, row)];
        std::int32_t* firsts = first_.data();
        std::int32_t* seconds = second_.data();
        for (std::int32_t col = 0; col < raster.cols; ++col) {
            // Masks, not conditions: they go in vector lanes.
            const std::int32_t hasValue = heights[col] != missing ? -1 : 0;
            const std::int32_t first = firsts[col];
            seconds[col] = (first & hasValue) | (seconds[col] & ~hasValue);
            firsts[col] = (row & hasValue) | (first & ~hasValue);
        }
    }

    NearestTwo At(std::int32_t col) const {
        return {first_[static_cast<std::size_t>(col)], second_[static_cast<std::size_t>(col)]};
    }

private:
    std::vector<std::int32_t> first_;
    std::vector<std::int32_t> second_;
};

/// Looks up and right from all cells: one walk over the raster from its end.
void LookUpAndRight(const Raster& raster, std::vector<MissingCell>& cells) {
    PassedRows above(raster.cols);
    NearestTwo right;
    std::int32_t row = raster.rows - 1;
    std::int32_t col = raster.cols - 1;
    for (auto cell = cells.rbegin(); cell != cells.rend(); ++cell) {
        for (; row > cell->row; --row) {
            above.Pass(raster, row);
            right = {};
            col = raster.cols - 1;
        }
        for (; col > cell->col; --col) {
            right.Pass(col, raster.At(col, row) != missing);
        }
        cell->above = above.At(cell->col);
        cell->right = right;
    }
}

/// The mean of what lies nearest in the four directions, given what lies below and left.
LineHit MeanOfDirections(const Raster& raster, const MissingCell& cell, const NearestTwo& below,
                         const NearestTwo& left) {
    const auto inColumn = [&cell](std::int32_t row) { return CellPosition{cell.col, row}; };
    const auto inRow = [&cell](std::int32_t col) { return CellPosition{col, cell.row}; };
    return MeanOfNearest({ContinueLine(raster, cell, cell.above, inColumn),
                          ContinueLine(raster, cell, left, inRow),
                          ContinueLine(raster, cell, below, inColumn),
                          ContinueLine(raster, cell, cell.right, inRow)});
}

/// Looks down and left from all cells, and finds their values: one walk from the raster's start.
void FindValues(const Raster& raster, std::vector<MissingCell>& cells) {
    PassedRows below(raster.cols);
    std::optional<ValuedCells> valued;  // made when the first cell needs it, which is rare
    NearestTwo left;
    std::int32_t row = 0;
    std::int32_t col = 0;
    for (MissingCell& cell : cells) {
        for (; row < cell.row; ++row) {
            below.Pass(raster, row);
            left = {};
            col = 0;
        }
        for (; col < cell.col; ++col) {
            left.Pass(col, raster.At(col, row) != missing);
        }
        const LineHit hit = MeanOfDirections(raster, cell, below.At(cell.col), left);
        if (hit.found) {
            cell.value = hit.value;
            continue;
        }
        if (!valued) {
            valued = FindValuedCells(raster.cols, raster.rows, raster.heights);
        }
        cell.value = raster.heights[static_cast<std::size_t>(
            FindNearestValue(*valued, raster.spacing, cell.col, cell.row))];
    }
}

}  // namespace

std::int32_t FillMissingCells(std::int32_t cols, std::int32_t rows, float spacing,
                              std::span<float> heights) {
    const Raster raster{cols, rows, spacing, heights};
    std::vector<MissingCell> cells = FindMissingCells(raster);
    if (cells.size() == heights.size()) {
        std::fill(heights.begin(), heights.end(), missing);
        return 0;
    }
    if (cells.empty()) {
        return 0;
    }
    LookUpAndRight(raster, cells);
    FindValues(raster, cells);
    for (const MissingCell& cell : cells) {
        heights[raster.Index(cell.col, cell.row)] = cell.value;
    }
    return static_cast<std::int32_t>(cells.size());
}

}  // namespace zelmo
