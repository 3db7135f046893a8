#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "pictures/step_image.h"
#include "render/slide/slide_layout.h"

// What becomes of a picture's pixels once OpenGL has drawn them. Their colours come multiplied by
// their opacity, which is 0 where nothing was drawn.

namespace zelmo {

/// The parts that a picture of this size is drawn in, all of them no larger than these limits, in
/// rows from below. No part has more than `mostPixels`.
std::vector<PixelRect> DivideIntoParts(std::int32_t width, std::int32_t height,
                                       std::int32_t mostWidth, std::int32_t mostHeight,
                                       std::int64_t mostPixels);

/// Writes `count` pixels of 4 bytes to `means`, each the mean of a square of `factor` by `factor`
/// pixels. `rows` are `factor` rows of `count * factor` pixels, one after the other.
void AverageSquares(std::span<const std::uint8_t> rows, std::int32_t factor, std::size_t count,
                    std::uint8_t* means);

/// Everything that was drawn, as far as there is something.
PixelRect FindDrawn(const StepImage& image);

/// Puts a white background behind the picture, or makes it one without a background: the colours as
/// files hold them, not multiplied by the opacity.
void FinishPixels(StepImage& image, bool transparent);

/// The part of a picture, which is all or partly inside of it, as far as it is.
void Crop(StepImage& image, const PixelRect& part);

}  // namespace zelmo
