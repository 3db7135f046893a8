#pragma once

#include <cstdint>

namespace zelmo {

/// Lets this many more allocations of the program succeed; the ones after them fail. Negative: all
/// succeed. Works in programs that link limited_memory.cpp, which replaces their operator new.
void LimitAllocations(std::int64_t count);

}  // namespace zelmo
