#pragma once

#include <cstdint>

#include "base/lanes.h"
#include "render/visible/visible_lanes.h"

// Where the uppermost opaque layer of a stack is level, row by row (see level_parts.h).

namespace zelmo {

/// The level places of a row: a code of the layer and of whether another one stands on it there, or
/// -1, and its height.
struct LevelRow {
    std::int32_t* code = nullptr;
    float* height = nullptr;
};

/// How near other surfaces may come to a level place, and how high the place may lie.
struct LevelLimits {
    float clearance = 0.0f;
    float highest = 0.0f;
};

/// Finds the places where no surface other than the lower one of the layer next above is nearer
/// than the clearance to the top of the uppermost opaque layer, and that one is as far away or lies
/// exactly on it. `layers` are those of a stack with their thick places, lowest first.
ZELMO_DECLARE_LANE_KERNEL(void FindLevelPlaces(const SheetRow* layers, std::int32_t layerCount,
                                               const LevelLimits& limits, std::int32_t cols,
                                               const LevelRow& level))

/// Marks with 1 the squares of a row of squares whose four corners have the same code and height,
/// and that no layer has only a part of. `uneven` is the mask of those that a layer has a part of.
ZELMO_DECLARE_LANE_KERNEL(void FindLevelSquares(const LevelRow& front, const LevelRow& back,
                                                const std::int32_t* uneven, std::int32_t squares,
                                                std::uint8_t* marks))

}  // namespace zelmo
