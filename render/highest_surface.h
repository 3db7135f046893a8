#pragma once

#include <span>

namespace zelmo {

struct CoverCell;

/// The height of the highest exposed point, always above 0: where none is higher, the smallest
/// normal number.
float HighestSurface(std::span<const CoverCell> coverMap);

}  // namespace zelmo
