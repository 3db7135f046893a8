#include "render/mesh/mesh_lanes.h"

#include <cstdint>

#include "base/lane_code.h"
#include "base/vector_lanes.h"

namespace zelmo::ZELMO_LANES {

namespace {

constexpr std::int32_t lanes = laneCount<FloatLanes>;

void AddCross(VectorLanes& sum, const VectorLanes& a, const VectorLanes& b) {
    const VectorLanes cross = Cross(a, b);
    sum = {sum.x + cross.x, sum.y + cross.y, sum.z + cross.z};
}

/// The sums of the fans from this column on, in the order of the squares: upper left, lower left,
/// lower right, upper right.
VectorLanes SumFan(const FanRow& row, std::int32_t col) {
    const FloatLanes height = LoadLanes<FloatLanes>(row.here + col);
    const auto neighbour = [&](std::int32_t dCol, std::int32_t dRow, const float* heights) {
        return VectorLanes{Broadcast<FloatLanes>(static_cast<float>(dCol) * row.spacing),
                           Broadcast<FloatLanes>(static_cast<float>(dRow) * row.spacing),
                           LoadLanes<FloatLanes>(heights + col + dCol) - height};
    };
    const VectorLanes left = neighbour(-1, 0, row.here);
    const VectorLanes right = neighbour(1, 0, row.here);
    VectorLanes sum{FloatLanes{}, FloatLanes{}, FloatLanes{}};
    if (row.above != nullptr) {
        const VectorLanes upperLeft = neighbour(-1, 1, row.above);
        AddCross(sum, neighbour(0, 1, row.above), upperLeft);
        AddCross(sum, upperLeft, left);
    }
    if (row.below != nullptr) {
        const VectorLanes lowerLeft = neighbour(-1, -1, row.below);
        const VectorLanes lowerRight = neighbour(1, -1, row.below);
        const VectorLanes down = neighbour(0, -1, row.below);
        AddCross(sum, left, lowerLeft);
        AddCross(sum, lowerLeft, down);
        AddCross(sum, down, lowerRight);
        AddCross(sum, lowerRight, right);
    }
    if (row.above != nullptr) {
        const VectorLanes upperRight = neighbour(1, 1, row.above);
        AddCross(sum, right, upperRight);
        AddCross(sum, upperRight, neighbour(0, 1, row.above));
    }
    return sum;
}

}  // namespace

std::int32_t SumFans(const FanRow& row, std::int32_t first, std::int32_t end, const FanSums& sums) {
    std::int32_t col = first;
    for (; col + lanes <= end; col += lanes) {
        const VectorLanes sum = SumFan(row, col);
        StoreLanes(sums.x + col, sum.x);
        StoreLanes(sums.y + col, sum.y);
        StoreLanes(sums.z + col, sum.z);
    }
    return col;
}

}  // namespace zelmo::ZELMO_LANES
