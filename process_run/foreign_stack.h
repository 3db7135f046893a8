#pragma once

#include <string>

namespace zelmo {

struct Grid;
struct Stack;

/// Why a stack that was not made by steps on this grid, but read from elsewhere, is none that steps
/// can go on with: arrays of another size, heights that are no numbers, a cover map that names
/// layers which are not there. Empty if it is one.
std::string WhyNoStack(const Stack& stack, const Grid& grid);

}  // namespace zelmo
