#pragma once

#include <cstdint>

namespace zelmo {

/// A coordinate pair of the layout, in database units.
struct GdsPoint {
    std::int64_t x = 0;
    std::int64_t y = 0;

    bool operator==(const GdsPoint&) const = default;
};

}  // namespace zelmo
