#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "base/lane_code.h"

// For files of lane kernels only: stretches of cells of any length, a lane a cell.

namespace zelmo::ZELMO_LANES {

constexpr std::int32_t cellLanes = laneCount<FloatLanes>;

/// The next lanes of cells: at the end of the cells there can be fewer.
struct NextCells {
    std::int32_t first;
    std::size_t bytes;
};

inline NextCells CellsFrom(std::int32_t first, std::int32_t count) {
    const std::int32_t left = count - first;
    return {first, static_cast<std::size_t>(left < cellLanes ? left : cellLanes) * sizeof(float)};
}

/// Lanes without a cell are 0.
template <typename Lanes, typename Value>
inline Lanes Load(const Value* values, const NextCells& next) {
    if (next.bytes == sizeof(Lanes)) {
        return LoadLanes<Lanes>(values + next.first);
    }
    Lanes some{};
    std::memcpy(&some, values + next.first, next.bytes);
    return some;
}

template <typename Value, typename Lanes>
inline void Store(Value* values, const Lanes& some, const NextCells& next) {
    if (next.bytes == sizeof(Lanes)) {
        StoreLanes(values + next.first, some);
    } else {
        std::memcpy(values + next.first, &some, next.bytes);
    }
}

}  // namespace zelmo::ZELMO_LANES
