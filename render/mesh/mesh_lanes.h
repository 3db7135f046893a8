#pragma once

#include <cstdint>

#include "base/lanes.h"

namespace zelmo {

/// A row of a height field with its neighbours; `below` or `above` is null where the fans of the
/// row's vertices have no squares.
struct FanRow {
    const float* below = nullptr;
    const float* here = nullptr;
    const float* above = nullptr;
    float spacing = 0.0f;
};

/// The sums of the cross products around vertices, x, y and z by column.
struct FanSums {
    float* x = nullptr;
    float* y = nullptr;
    float* z = nullptr;
};

/// Adds up the fans of the columns from `first` to before `end` that have a column on both sides.
/// Returns the column up to which it got: the last few are left to others.
ZELMO_DECLARE_LANE_KERNEL(std::int32_t SumFans(const FanRow& row, std::int32_t first,
                                               std::int32_t end, const FanSums& sums))

}  // namespace zelmo
