#include "base/lanes.h"

#include <atomic>

namespace zelmo {

namespace {

std::atomic<bool> wideLanesAllowed{true};

}  // namespace

bool HasWideLanes() {
    static const bool machineHasThem = __builtin_cpu_supports("avx2") != 0;
    return machineHasThem && wideLanesAllowed;
}

void AllowWideLanes(bool allowed) {
    wideLanesAllowed = allowed;
}

}  // namespace zelmo
