#pragma once

#include <cstdint>

#include "base/lanes.h"

namespace zelmo {

/// Rows for HighestSquare need as many values behind their own as there are wide lanes.
constexpr std::int32_t spareStops = 8;

/// Raises each stop height to the layer's upper surface where that is higher and the layer has
/// thickness. Surfaces that are no number do not count.
ZELMO_DECLARE_LANE_KERNEL(void RaiseStop(const float* top, const float* bottom, float* stop,
                                         std::int32_t count))

/// Of the squares of 3 by 3 values in three rows, the highest of their lowest values. No value is
/// NaN. Each row has `squares` + 2 values, and behind them `spareStops` that are as low as any.
ZELMO_DECLARE_LANE_KERNEL(float HighestSquare(const float* front, const float* middle,
                                              const float* back, std::int32_t squares))

/// Whether any height is above the plane.
ZELMO_DECLARE_LANE_KERNEL(bool AnyAbove(const float* heights, std::int32_t count, float plane))

/// Whether no height is below the plane, or no number.
ZELMO_DECLARE_LANE_KERNEL(bool NoneBelow(const float* heights, std::int32_t count, float plane))

/// Lowers the heights above the plane to it.
ZELMO_DECLARE_LANE_KERNEL(void LowerToPlane(float* heights, std::int32_t count, float plane))

}  // namespace zelmo
