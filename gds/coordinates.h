#pragma once

#include <cstdint>
#include <limits>

// Arithmetic on layout coordinates, defined for every value a damaged file can hold.

namespace zelmo {

/// Truncates toward zero. Values outside the range give the nearest end of it, NaN gives 0.
inline std::int64_t TruncateToI64(double value) {
    constexpr double limit = 0x1p63;
    if (value >= -limit && value < limit) {
        return static_cast<std::int64_t>(value);
    }
    if (value != value) {
        return 0;
    }
    return value < 0.0 ? std::numeric_limits<std::int64_t>::min()
                       : std::numeric_limits<std::int64_t>::max();
}

/// a + b, held at the ends of the range.
inline std::int64_t SaturatingAdd(std::int64_t a, std::int64_t b) {
    constexpr std::int64_t least = std::numeric_limits<std::int64_t>::min();
    constexpr std::int64_t greatest = std::numeric_limits<std::int64_t>::max();
    if (b > 0 && a > greatest - b) {
        return greatest;
    }
    if (b < 0 && a < least - b) {
        return least;
    }
    return a + b;
}

/// a - b, held at the ends of the range.
inline std::int64_t SaturatingSubtract(std::int64_t a, std::int64_t b) {
    constexpr std::int64_t least = std::numeric_limits<std::int64_t>::min();
    constexpr std::int64_t greatest = std::numeric_limits<std::int64_t>::max();
    if (b < 0 && a > greatest + b) {
        return greatest;
    }
    if (b > 0 && a < least + b) {
        return least;
    }
    return a - b;
}

}  // namespace zelmo
