#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>

#include "base/lanes.h"
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

inline IntLanes Smaller(const IntLanes& a, const IntLanes& b) {
    return a < b ? a : b;
}

inline IntLanes Larger(const IntLanes& a, const IntLanes& b) {
    return a > b ? a : b;
}

/// The lanes, each `distance` lanes from its place.
template <std::int32_t distance, std::size_t... lane>
IntLanes Turned(const IntLanes& values, std::index_sequence<lane...>) {
    return __builtin_shufflevector(values, values, static_cast<int>((lane + distance) % lanes)...);
}

template <std::int32_t distance = lanes / 2>
std::int32_t SmallestLane(const IntLanes& values) {
    if constexpr (distance == 0) {
        return values[0];
    } else {
        return SmallestLane<distance / 2>(
            Smaller(values, Turned<distance>(values, std::make_index_sequence<lanes>())));
    }
}

inline std::int32_t LargestLane(const IntLanes& values) {
    return -SmallestLane(-values);
}

/// The whole cells in positions, from `low` to `high`. Numbers that TruncateToI32 has no cell for
/// count as `low`, those that are too large for it as well.
inline IntLanes CellsWithin(const FloatLanes& positions, float low, float high) {
    const FloatLanes fitting = ((positions >= low) & (positions < 2147483648.0f))
                                   ? positions
                                   : EqualLanes<FloatLanes>(low);
    return __builtin_convertvector(fitting < high ? fitting : EqualLanes<FloatLanes>(high),
                                   IntLanes);
}

}  // namespace zelmo::ZELMO_LANES
