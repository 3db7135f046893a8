#pragma once

#include <cstdint>

#include "base/lanes.h"

namespace zelmo {

/// One bit for each of `cells` neighbouring cells, the first one in the lowest bit of the first
/// word: whether the layer has thickness there. A NaN counts as thickness. The words whose bits are
/// clear in `wantedWords` are set to 0.
ZELMO_DECLARE_LANE_KERNEL(void MarkThickCells(const float* top, const float* bottom,
                                              std::int32_t cells, std::uint32_t wantedWords,
                                              std::uint64_t* words))

}  // namespace zelmo
