#pragma once

#include <cstdint>

#include "base/lanes.h"

namespace zelmo {

/// `count` cells of one layer under an etch front, and for each of them -1 in `open` while the
/// front can get there, 0 afterwards.
struct EtchedCells {
    float* top = nullptr;
    const float* bottom = nullptr;
    const float* front = nullptr;
    std::int32_t* open = nullptr;
    std::int32_t count = 0;
};

/// Lowers the open cells to the front, down to their bottoms; those that keep a thickness close.
/// Returns whether any stay open.
ZELMO_DECLARE_LANE_KERNEL(bool LowerToFront(const EtchedCells& cells))

/// Closes the open cells where the layer has thickness. Returns whether any stay open.
ZELMO_DECLARE_LANE_KERNEL(bool CloseWhereThick(const EtchedCells& cells))

}  // namespace zelmo
