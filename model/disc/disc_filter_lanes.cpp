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
        for (std::int32_t i = 0; i < groupSize; ++i) {
            sums[i] += LoadLanes<DoubleLanes>(cells + i * laneCount<DoubleLanes>);
        }
    }
    void Remove(const double* cells) {
        for (std::int32_t i = 0; i < groupSize; ++i) {
            sums[i] -= LoadLanes<DoubleLanes>(cells + i * laneCount<DoubleLanes>);
        }
    }
    void Store(double* out) const {
        for (std::int32_t i = 0; i < groupSize; ++i) {
            StoreLanes(out + i * laneCount<DoubleLanes>, sums[i]);
        }
    }
};

/// Slides the disc along the group of rows that begins at row `firstRow` of the band.
void SumRowGroup(const DiscBand& band, std::int32_t firstRow, double* sums) {
    // A cell outside the grid counts as 0, which changes no sum: one that begins with 0 never
    // becomes -0.
    static constexpr double zeros[groupRows] = {};
    const auto cellsAt = [&band, firstRow](std::int32_t col, std::int32_t dy) {
        return col >= 0 && col < band.cols ? band.cells + col * band.stride + firstRow + dy : zeros;
    };
    RowGroup group;
    for (std::size_t i = 0; i < band.insideCount; ++i) {
        group.Add(cellsAt(band.inside[i].dx, band.inside[i].dy));
    }
    group.Store(sums + firstRow);
    for (std::int32_t col = 1; col < band.cols; ++col) {
        for (std::size_t i = 0; i < band.leavingCount; ++i) {
            const GridOffset offset = band.leaving[i];
            group.Remove(cellsAt(col + offset.dx, offset.dy));
            group.Add(cellsAt(col - offset.dx - 1, offset.dy));
        }
        group.Store(sums + static_cast<std::ptrdiff_t>(col) * discBandRows + firstRow);
    }
}

}  // namespace

void SumDiscBand(const DiscBand& band, double* sums) {
    for (std::int32_t row = 0; row < discBandRows; row += groupRows) {
        SumRowGroup(band, row, sums);
    }
}

}  // namespace zelmo::ZELMO_LANES
