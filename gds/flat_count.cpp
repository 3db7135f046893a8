#include "gds/flat_count.h"

#include <limits>

namespace zelmo {

namespace {

constexpr std::uint64_t greatest = std::numeric_limits<std::uint64_t>::max();

bool IsNone(const FlatCount& count) {
    return count.isExact && count.exact == 0;
}

}  // namespace

FlatCount operator+(const FlatCount& a, const FlatCount& b) {
    if (a.isExact && b.isExact && a.exact <= greatest - b.exact) {
        return CountOf(a.exact + b.exact);
    }
    return {0, a.estimate + b.estimate, false};
}

FlatCount operator*(const FlatCount& a, const FlatCount& b) {
    if (IsNone(a) || IsNone(b)) {
        return {};
    }
    if (a.isExact && b.isExact && a.exact <= greatest / b.exact) {
        return CountOf(a.exact * b.exact);
    }
    return {0, a.estimate * b.estimate, false};
}

}  // namespace zelmo
