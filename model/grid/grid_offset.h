#pragma once

#include <cstdint>

namespace zelmo {

/// The way from one cell of the grid to another.
struct GridOffset {
    std::int32_t dx = 0;
    std::int32_t dy = 0;

    bool operator==(const GridOffset&) const = default;
};

}  // namespace zelmo
