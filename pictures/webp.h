#pragma once

#include <cstdint>
#include <vector>

#include "pictures/step_image.h"

namespace zelmo {

// The bytes of WebP files, top row first and without the picture's alpha, as PNG files have them.
// Empty where the picture is empty or larger than 16383 pixels, which is the most that WebP holds.
// Throws std::bad_alloc.

/// Every pixel as it is.
std::vector<std::uint8_t> LosslessWebp(const StepImage& image);

/// Small rather than exact: `quality` from 0 to 100.
std::vector<std::uint8_t> LossyWebp(const StepImage& image, float quality);

}  // namespace zelmo
