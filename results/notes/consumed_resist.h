#pragma once

#include <cstdint>
#include <vector>

#include "results/notes/stack_before.h"

namespace zelmo {

/// Where resist was, and where an etch used it up: one value for each cell of the shown window, in
/// rows of `cols`.
struct ConsumedResist {
    std::int32_t cols = 0;
    std::vector<std::uint8_t> before;
    std::vector<std::uint8_t> consumed;
};

/// Whether more is gone than the slopes at the edges of the resist, which give way in every etch:
/// somewhere resist that is wider than `slope` cells to both sides, or all of a piece of resist
/// that lies wholly in the window.
bool IsMoreThanSlopes(const ConsumedResist& resist, std::int32_t slope);

}  // namespace zelmo
