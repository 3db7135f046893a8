#pragma once

#include <cstdint>
#include <string>

#include "pictures/step_image.h"
#include "render/gl/text_font.h"

namespace zelmo {

/// A line of text on white, in the middle of a picture of this size; shortened where it is too
/// long. Its glyphs are its bytes.
StepImage DrawCaption(const std::string& text, std::int32_t width, std::int32_t height,
                      TextFont& fonts);

}  // namespace zelmo
