#pragma once

#include <cstdint>

#include "base/lanes.h"

namespace zelmo {

// How far the way down a column has come.
constexpr std::int32_t columnOpen = 0;        ///< no layer with thickness so far
constexpr std::int32_t columnConverting = 1;  ///< into a converted layer, and the depth goes on
constexpr std::int32_t columnShielded = 2;    ///< to what is no target; no target below it so far
constexpr std::int32_t columnDone = 3;

// What stands for the first converted layer of a column that has none.
constexpr std::int32_t noTarget = 0;         ///< there is no target with thickness either
constexpr std::int32_t shieldedTarget = -1;  ///< there is one

/// What becomes of `count` neighbouring columns.
struct DopedColumns {
    float* top = nullptr;           ///< of the new layer
    float* bottom = nullptr;        ///< the same; on the way, of the last converted layer
    std::int32_t* first = nullptr;  ///< id of the first converted layer, or what stands for it
    std::int32_t* last = nullptr;   ///< id of the last one
    std::int32_t* state = nullptr;  ///< one of the above
    std::int32_t count = 0;
};

/// The surfaces of a layer in those columns.
struct LayerColumns {
    const float* top = nullptr;
    const float* bottom = nullptr;
    std::int32_t id = 0;
};

/// What came of the way into a layer: whether it is converted anywhere, and whether any column is
/// not done.
struct ConversionProgress {
    bool converts = false;
    bool goesOn = false;
};

/// Goes down into a layer of a target type. It is converted where it is exposed, and where it
/// touches the converted one above it and the depth reaches below that. Where something shields
/// it, its upper surface becomes both surfaces of the new layer. A layer whose upper surface is no
/// finite number above its lower one is no target.
ZELMO_DECLARE_LANE_KERNEL(ConversionProgress ConvertTarget(const DopedColumns& columns,
                                                           const LayerColumns& layer, float depth))

/// Goes down into any other layer, which ends the way where it has thickness. Returns whether any
/// column is not done.
ZELMO_DECLARE_LANE_KERNEL(bool MeetShield(const DopedColumns& columns, const LayerColumns& layer))

/// Lowers a layer where it is converted: to the bottom of the new layer where it is the last one of
/// its column, and elsewhere to its own bottom.
ZELMO_DECLARE_LANE_KERNEL(void LowerConverted(float* top, const LayerColumns& layer,
                                              const DopedColumns& columns))

/// The highest id of a first converted layer among the eight columns around each of `count` that
/// have no target, and 0 for the others. The rows hold `first` of the columns and of one more on
/// either side. Returns whether any is not 0.
ZELMO_DECLARE_LANE_KERNEL(bool FindRim(const std::int32_t* front, const std::int32_t* middle,
                                       const std::int32_t* back, std::int32_t* rim,
                                       std::int32_t count))

}  // namespace zelmo
