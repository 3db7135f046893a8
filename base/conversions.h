#pragma once

#include <cstdint>
#include <limits>

namespace zelmo {

/// Truncates toward zero. NaN and values outside the range give the most negative number, on every
/// platform and at every optimisation level.
inline std::int32_t TruncateToI32(float value) {
    if (value >= -2147483648.0f && value < 2147483648.0f) {
        return static_cast<std::int32_t>(value);
    }
    return std::numeric_limits<std::int32_t>::min();
}

inline std::int32_t TruncateToI32(double value) {
    if (value > -2147483649.0 && value < 2147483648.0) {
        return static_cast<std::int32_t>(value);
    }
    return std::numeric_limits<std::int32_t>::min();
}

}  // namespace zelmo
