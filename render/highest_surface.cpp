#include "render/highest_surface.h"

#include <limits>

#include "model/stack.h"

namespace zelmo {

float HighestSurface(std::span<const CoverCell> coverMap) {
    // Starts above 0: a camera needs a stack of some height.
    float highest = std::numeric_limits<float>::min();
    for (const CoverCell& cell : coverMap) {
        if (cell.height > highest) {
            highest = cell.height;
        }
    }
    return highest;
}

}  // namespace zelmo
