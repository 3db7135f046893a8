#pragma once

#include <algorithm>
#include <cstdint>

// What can be set, whoever sets it.

namespace zelmo {

inline constexpr std::int32_t fewestGridColumns = 200;
inline constexpr std::int32_t mostGridColumns = 2000;
inline constexpr float largestCameraAngle = 90.0f;  ///< degrees, from 0

inline bool IsGridColumns(std::int32_t columns) {
    return columns >= fewestGridColumns && columns <= mostGridColumns;
}

inline bool IsCameraAngle(float degrees) {
    return degrees >= 0.0f && degrees <= largestCameraAngle;
}

/// The camera's angle where this one is asked for: it never looks straight down.
inline float UsedCameraAngle(float degrees) {
    return std::min(degrees, 89.0f);
}

}  // namespace zelmo
