#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

#include "pictures/step_image.h"

namespace zelmo {

/// A picture with another below it, both in the middle, on white.
StepImage StackImages(const StepImage& upper, const StepImage& lower);

/// The columns of a sheet of `count` pictures of this size that comes nearest to a screen's
/// proportions.
std::int32_t SheetColumns(std::size_t count, std::int32_t width, std::int32_t height);

/// Pictures side by side on white, in rows from the upper left corner, with a gap between them and
/// around: `count` of them, of this size or smaller, which `pictureOf` makes one after the other.
/// Throws std::bad_alloc, and what `pictureOf` throws.
StepImage ContactSheet(std::size_t count, std::int32_t width, std::int32_t height,
                       std::int32_t columns,
                       const std::function<StepImage(std::size_t)>& pictureOf);

}  // namespace zelmo
