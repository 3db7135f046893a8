#include "model/disc/disc_filter.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <span>
#include <vector>

#include "base/row_bands.h"
#include "base/stop_scope.h"
#include "model/disc/disc_filter_lanes.h"
#include "model/disc/sliding_disc.h"
#include "model/grid/grid.h"
#include "model/stack.h"

// Each sum is carried along a whole row in double precision, and its roundings with it: the order
// of the additions is part of the result. But the rows are independent of each other. So the
// heights are copied column by column, and many rows are summed up at once in vector lanes, each
// row in its own order.

namespace zelmo {

namespace {

/// The heights column by column, neighbouring rows side by side. Zeros above and below the grid
/// make room for a pass over rows of which all but one are outside.
class ColumnMajorHeights {
public:
    ColumnMajorHeights(std::span<const float> heights, std::int32_t cols, std::int32_t rows)
        : cols_(cols), rows_(rows), stride_(Stride(rows)) {
        cells_ = std::make_unique_for_overwrite<double[]>(static_cast<std::size_t>(cols) *
                                                          static_cast<std::size_t>(stride_));
        ForRowBands(cols, 64, [this, heights](std::int32_t first, std::int32_t end) {
            for (std::int32_t col = first; col < end; col += tileCols) {
                CopyColumns(heights.data(), col, std::min(col + tileCols, end));
            }
        });
    }

    /// Column 0 of row `row`.
    const double* RowBegin(std::int32_t row) const { return cells_.get() + margin + row; }
    std::ptrdiff_t ColumnStride() const { return stride_; }

private:
    static constexpr std::int32_t margin = rowsAtOnce - 1;
    static constexpr std::int32_t tileCols = 16;

    /// An odd number of cache lines, so that neighbouring columns lie in different places of the
    /// cache.
    static std::ptrdiff_t Stride(std::int32_t rows) {
        constexpr std::ptrdiff_t line = 8;
        return ((rows + 2 * margin + line - 1) / line | 1) * line;
    }

    void CopyColumns(const float* heights, std::int32_t firstCol, std::int32_t endCol) {
        for (std::int32_t col = firstCol; col < endCol; ++col) {
            double* const column = cells_.get() + col * stride_;
            std::fill(column, column + margin, 0.0);
            std::fill(column + margin + rows_, column + stride_, 0.0);
        }
        for (std::int32_t row = 0; row < rows_; ++row) {
            const float* const from = heights + static_cast<std::ptrdiff_t>(row) * cols_;
            double* const to = cells_.get() + margin + row;
            for (std::int32_t col = firstCol; col < endCol; ++col) {
                to[col * stride_] = from[col];
            }
        }
    }

    std::int32_t cols_;
    std::int32_t rows_;
    std::ptrdiff_t stride_;
    std::unique_ptr<double[]> cells_;
};

/// Filters so many rows at a time, and keeps the work arrays.
struct RowsFilter {
    const SlidingDisc& disc;
    const ColumnMajorHeights& heights;
    std::vector<GridOffset> inside;  ///< those that lead to rows of the grid, as `leaving`
    std::vector<GridOffset> leaving;
    std::vector<double> sums;          ///< column by column
    std::vector<std::int32_t> counts;  ///< of cells in the disc, for the row `countedRow`
    std::int32_t countedRow = -1;

    RowsFilter(const SlidingDisc& slidingDisc, const ColumnMajorHeights& columnMajorHeights)
        : disc(slidingDisc), heights(columnMajorHeights) {
        sums.resize(static_cast<std::size_t>(disc.cols) * rowsAtOnce);
    }

    void SumUp(std::int32_t firstRow) {
        const auto meetsGrid = [this, firstRow](const GridOffset& offset) {
            const std::int32_t row = firstRow + offset.dy;
            return row > -rowsAtOnce && row < disc.rows;
        };
        inside.clear();
        std::copy_if(
            disc.inside.begin(), disc.inside.end(), std::back_inserter(inside),
            [&meetsGrid](const GridOffset& offset) { return offset.dx >= 0 && meetsGrid(offset); });
        leaving.clear();
        std::copy_if(disc.leaving.begin(), disc.leaving.end(), std::back_inserter(leaving),
                     meetsGrid);
        DiscRows rows;
        rows.cells = heights.RowBegin(firstRow);
        rows.stride = heights.ColumnStride();
        rows.cols = disc.cols;
        rows.inside = inside.data();
        rows.insideCount = inside.size();
        rows.leaving = leaving.data();
        rows.leavingCount = leaving.size();
        ZELMO_PICK_LANES(SumDiscs)(rows, sums.data());
    }

    void TakeMeans(Layer& layer, std::int32_t firstRow, std::int32_t row) {
        if (countedRow < 0 || IsCut(disc, row) || IsCut(disc, countedRow)) {
            CountCells(disc, row, counts);
            countedRow = row;
        }
        const auto width = static_cast<std::size_t>(disc.cols);
        float* const top = layer.top.data() + static_cast<std::size_t>(row) * width;
        const float* const bottom = layer.bottom.data() + static_cast<std::size_t>(row) * width;
        const double* const rowSums = sums.data() + (row - firstRow);
        for (std::size_t col = 0; col < width; ++col) {
            const auto mean = static_cast<float>(rowSums[col * rowsAtOnce] / counts[col]);
            top[col] = bottom[col] > mean ? bottom[col] : mean;
        }
    }
};

}  // namespace

void SmoothLayerTop(const Grid& grid, Layer& layer, float radius) {
    const std::int32_t rows = grid.rows;
    if (rows < 1 || grid.columns < 1) {
        return;
    }
    const SlidingDisc disc = SelectSlidingDisc(grid, radius);
    const ColumnMajorHeights heights(layer.top, grid.columns, rows);
    const std::int32_t passes = (rows - 1) / rowsAtOnce + 1;
    ForRowBands(passes, 1, [&](std::int32_t first, std::int32_t end) {
        RowsFilter filter(disc, heights);
        for (std::int32_t firstRow = first * rowsAtOnce;
             firstRow < std::min(end * rowsAtOnce, rows); firstRow += rowsAtOnce) {
            EndIfStopped();
            filter.SumUp(firstRow);
            for (std::int32_t row = firstRow; row < std::min(firstRow + rowsAtOnce, rows); ++row) {
                filter.TakeMeans(layer, firstRow, row);
            }
        }
    });
}

}  // namespace zelmo
