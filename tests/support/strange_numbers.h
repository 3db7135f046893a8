#pragma once

#include <limits>

namespace zelmo {

// What heights can be besides numbers
inline constexpr float nan = std::numeric_limits<float>::quiet_NaN();
inline constexpr float infinity = std::numeric_limits<float>::infinity();

}  // namespace zelmo
