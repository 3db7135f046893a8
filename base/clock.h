#pragma once

#include <cstdint>

namespace zelmo {

/// Wall-clock milliseconds since the program's start.
std::int32_t ElapsedMilliseconds();

}  // namespace zelmo
