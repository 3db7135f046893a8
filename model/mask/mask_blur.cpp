#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <vector>

#include "base/row_bands.h"
#include "base/stop_scope.h"
#include "model/disc/sliding_disc.h"
#include "model/grid/grid.h"
#include "model/mask/mask.h"
#include "model/mask/mask_blur_lanes.h"

// The counts of set cells are whole numbers, and whatever the order in which the sliding disc takes
// cells in and gives them up, the same number comes out. In the row that an offset leads to, the
// cells that entered the disc up to some column lie side by side, and so do those that left it:
// with running counts of the set cells in each row, two look-ups for every offset give the count of
// any column by itself, and neighbouring columns are counted in vector lanes.

namespace zelmo {

namespace {

/// The most cells by which a look-up for the disc around column 0 is off that column.
std::int32_t ReachOf(const SlidingDisc& disc) {
    std::int32_t reach = 0;
    for (const GridOffset& offset : disc.leaving) {
        reach = std::max({reach, std::abs(offset.dx), std::abs(offset.dx + 1)});
    }
    return reach;
}

/// For each row that the disc reaches from the present one, how many of its first cells are set,
/// for any number of cells. The rows are counted in ascending order, each once.
class RunningCounts {
public:
    RunningCounts(const SlidingDisc& disc, std::span<const std::uint8_t> rawMask)
        : disc_(disc),
          rawMask_(rawMask),
          reach_(ReachOf(disc)),
          stride_(disc.cols + 2 * reach_ + blurOvershoot + 1),
          slots_(std::min(disc.highestDy - disc.lowestDy + 1, disc.rows)) {
        counts_.resize(static_cast<std::size_t>(slots_) * static_cast<std::size_t>(stride_));
    }

    void MoveTo(std::int32_t row) {
        const std::int32_t end = std::min(row + disc_.highestDy + 1, disc_.rows);
        for (next_ = std::max(next_, row + disc_.lowestDy); next_ < end; ++next_) {
            CountRow(next_);
        }
    }

    /// The count of the first 0 cells of a row; reach() counts are to its left, which are 0, too,
    /// and as many beyond that of all cells.
    const std::int32_t* RowBegin(std::int32_t row) const {
        return counts_.data() + row % slots_ * stride_ + reach_;
    }

private:
    void CountRow(std::int32_t row) {
        const std::uint8_t* const cells =
            rawMask_.data() + static_cast<std::ptrdiff_t>(row) * disc_.cols;
        std::int32_t* const begin = counts_.data() + row % slots_ * stride_;
        std::int32_t* const counts = begin + reach_;
        std::fill(begin, counts, 0);
        std::int32_t count = 0;
        for (std::int32_t col = 0; col < disc_.cols; ++col) {
            counts[col] = count;
            count += cells[col] != 0 ? 1 : 0;
        }
        std::fill(counts + disc_.cols, begin + stride_, count);
    }

    const SlidingDisc& disc_;
    std::span<const std::uint8_t> rawMask_;
    std::int32_t reach_;
    std::ptrdiff_t stride_;
    std::int32_t slots_;
    std::int32_t next_ = 0;
    std::vector<std::int32_t> counts_;
};

/// Blurs one row after the other, in ascending order.
class RowBlur {
public:
    RowBlur(const SlidingDisc& disc, std::span<const std::uint8_t> rawMask)
        : disc_(disc), running_(disc, rawMask) {
        setCells_.resize(static_cast<std::size_t>(disc.cols) + blurOvershoot);
    }

    void BlurRow(std::int32_t row, std::span<std::uint8_t> mask) {
        running_.MoveTo(row);
        const std::int32_t start = FindEdges(row);
        ZELMO_PICK_LANES(SumDiscEdges)
        (edges_.data(), edges_.size(), start, disc_.cols, setCells_.data());
        if (cellsRow_ < 0 || IsCut(disc_, row) || IsCut(disc_, cellsRow_)) {
            CountCells(disc_, row, cells_);
            cellsRow_ = row;
        }
        ZELMO_PICK_LANES(MarkMajorities)
        (setCells_.data(), cells_.data(), disc_.cols,
         mask.data() + static_cast<std::ptrdiff_t>(row) * disc_.cols);
    }

private:
    /// Returns the number of set cells in the disc around column 0, less what the edges give there.
    std::int32_t FindEdges(std::int32_t row) {
        std::int32_t start = 0;
        for (std::int32_t dy = std::max(disc_.lowestDy, -row);
             dy <= std::min(disc_.highestDy, disc_.rows - 1 - row); ++dy) {
            start += running_.RowBegin(
                row + dy)[disc_.firstCells[static_cast<std::size_t>(dy - disc_.lowestDy)]];
        }
        edges_.clear();
        for (const GridOffset& offset : disc_.leaving) {
            if (row + offset.dy >= 0 && row + offset.dy < disc_.rows) {
                const std::int32_t* const counts = running_.RowBegin(row + offset.dy);
                const DiscEdge edge{counts - offset.dx, counts + offset.dx + 1};
                start -= *edge.taken - *edge.given;
                edges_.push_back(edge);
            }
        }
        return start;
    }

    const SlidingDisc& disc_;
    RunningCounts running_;
    std::vector<DiscEdge> edges_;
    std::vector<std::int32_t> setCells_;
    std::vector<std::int32_t> cells_;  ///< in the disc, for row `cellsRow_`
    std::int32_t cellsRow_ = -1;
};

}  // namespace

void BlurMask(const Grid& grid, std::span<std::uint8_t> mask, std::span<const std::uint8_t> rawMask,
              float radius) {
    const SlidingDisc disc = SelectSlidingDisc(grid, radius);
    ForRowBands(grid.rows, 64, [&](std::int32_t firstRow, std::int32_t endRow) {
        RowBlur blur(disc, rawMask);
        for (std::int32_t row = firstRow; row < endRow; ++row) {
            EndIfStopped();
            blur.BlurRow(row, mask);
        }
    });
}

}  // namespace zelmo
