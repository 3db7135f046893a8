#include "base/clock.h"

#include <chrono>

namespace zelmo {

namespace {
const auto programStart = std::chrono::steady_clock::now();
}

std::int32_t ElapsedMilliseconds() {
    const auto elapsed = std::chrono::steady_clock::now() - programStart;
    return static_cast<std::int32_t>(
        std::chrono::duration_cast<std::chrono::milliseconds>(elapsed).count());
}

}  // namespace zelmo
