#include "model/disc/disc_filter_lanes.h"

#include "base/lane_code.h"

namespace zelmo::ZELMO_LANES {

namespace {

/// The sums of so many vectors of rows stay in registers and hide how long an addition takes.
constexpr std::int32_t groupSize = 8;
constexpr std::int32_t groupRows = groupSize * laneCount<DoubleLanes>;

struct RowGroup {
    DoubleLanes sums[groupSize] = {};

    void Add(const double* cells) {
        for (std::ptrdiff_t i = 0; i < groupSize; ++i) {
            sums[i] += LoadLanes<DoubleLanes>(cells + i * laneCount<DoubleLanes>);
        }
    }
    void Remove(const double* cells) {
        for (std::ptrdiff_t i = 0; i < groupSize; ++i) {
            sums[i] -= LoadLanes<DoubleLanes>(cells + i * laneCount<DoubleLanes>);
        }
    }
    void Store(double* out) const {
        for (std::ptrdiff_t i = 0; i < groupSize; ++i) {
            StoreLanes(out + i * laneCount<DoubleLanes>, sums[i]);
        }
    }
};

/// Slides the disc along the group that begins with row `firstRow` of the rows.
void SumRowGroup(const DiscRows& rows, std::int32_t firstRow, double* sums) {
    // A cell outside the grid counts as 0, which changes no sum: one that begins with 0 never
    // becomes -0.
    static constexpr double zeros[groupRows] = {};
    const auto cellsAt = [&rows, firstRow](std::int32_t col, std::int32_t dy) {
        return col >= 0 && col < rows.cols ? rows.cells + col * rows.stride + firstRow + dy : zeros;
    };
    RowGroup group;
    for (std::size_t i = 0; i < rows.insideCount; ++i) {
        group.Add(cellsAt(rows.inside[i].dx, rows.inside[i].dy));
    }
    group.Store(sums + firstRow);
    for (std::int32_t col = 1; col < rows.cols; ++col) {
        for (std::size_t i = 0; i < rows.leavingCount; ++i) {
            const GridOffset offset = rows.leaving[i];
            group.Remove(cellsAt(col + offset.dx, offset.dy));
            group.Add(cellsAt(col - offset.dx - 1, offset.dy));
        }
        group.Store(sums + static_cast<std::ptrdiff_t>(col) * rowsAtOnce + firstRow);
    }
}

}  // namespace

void SumDiscs(const DiscRows& rows, double* sums) {
    for (std::int32_t row = 0; row < rowsAtOnce; row += groupRows) {
        SumRowGroup(rows, row, sums);
    }
}

}  // namespace zelmo::ZELMO_LANES
