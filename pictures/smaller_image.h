#pragma once

#include <cstdint>

#include "pictures/step_image.h"

namespace zelmo {

/// The picture `width` pixels wide in its proportions, at least one pixel high: each pixel is the
/// mean of what lies on it. A picture that is not wider stays as it is.
StepImage SmallerImage(const StepImage& image, std::int32_t width);

}  // namespace zelmo
