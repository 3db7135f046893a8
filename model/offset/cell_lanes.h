#pragma once

#include <cstdint>

#include "base/lane_code.h"
#include "model/offset/triangle_lanes.h"

// For files of lane kernels only: which cells triangles lie over.

namespace zelmo::ZELMO_LANES {

/// Ranges of columns and rows, the last ones included.
template <typename Number>
struct Box {
    Number minCol;
    Number maxCol;
    Number minRow;
    Number maxRow;
};

/// The horizontal position of a corner in cells.
struct CornerCells {
    FloatLanes col;
    FloatLanes row;
};

inline CornerCells LoadCells(const VertexRow& row, std::int32_t col) {
    return {LoadLanes<FloatLanes>(row.col + col), LoadLanes<FloatLanes>(row.row + col)};
}

/// The whole cells in positions, from `low` to `high`. Numbers that TruncateToI32 has no cell for
/// count as `low`, those that are too large for it as well.
inline IntLanes CellsWithin(const FloatLanes& positions, float low, float high) {
    const FloatLanes fitting =
        ((positions >= low) & (positions < 2147483648.0f)) ? positions : Broadcast<FloatLanes>(low);
    return __builtin_convertvector(fitting < high ? fitting : Broadcast<FloatLanes>(high),
                                   IntLanes);
}

}  // namespace zelmo::ZELMO_LANES
