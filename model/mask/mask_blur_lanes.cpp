#include "model/mask/mask_blur_lanes.h"

#include "base/lane_code.h"

namespace zelmo::ZELMO_LANES {

void SumDiscEdges(const DiscEdge* edges, std::size_t edgeCount, std::int32_t start,
                  std::int32_t cols, std::int32_t* sums) {
    constexpr std::int32_t groupSize = 8;
    constexpr std::int32_t groupCols = groupSize * laneCount<IntLanes>;
    static_assert(groupCols <= blurOvershoot + 1);
    for (std::int32_t col = 0; col < cols; col += groupCols) {
        IntLanes group[groupSize];
        for (IntLanes& lanes : group) {
            lanes = Broadcast<IntLanes>(start);
        }
        for (std::size_t edge = 0; edge < edgeCount; ++edge) {
            const std::int32_t* const taken = edges[edge].taken + col;
            const std::int32_t* const given = edges[edge].given + col;
            for (std::ptrdiff_t i = 0; i < groupSize; ++i) {
                group[i] += LoadLanes<IntLanes>(taken + i * laneCount<IntLanes>);
                group[i] -= LoadLanes<IntLanes>(given + i * laneCount<IntLanes>);
            }
        }
        for (std::ptrdiff_t i = 0; i < groupSize; ++i) {
            StoreLanes(sums + col + i * laneCount<IntLanes>, group[i]);
        }
    }
}

void MarkMajorities(const std::int32_t* setCells, const std::int32_t* cells, std::int32_t cols,
                    std::uint8_t* mask) {
    for (std::int32_t col = 0; col < cols; ++col) {
        const auto on = static_cast<float>(setCells[col]);
        const auto total = static_cast<float>(cells[col]);
        mask[col] = on > total * 0.5f ? 1 : 0;
    }
}

}  // namespace zelmo::ZELMO_LANES
