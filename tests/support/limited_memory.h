#pragma once

#include <cstdint>

// For programs that link limited_memory.cpp, which replaces their operator new.

namespace zelmo {

/// Lets this many more allocations of the program succeed; the ones after them fail. Negative: all
/// succeed.
void LimitAllocations(std::int64_t count);

/// How many allocations of the program have not been given back.
std::int64_t LivingAllocations();

}  // namespace zelmo
