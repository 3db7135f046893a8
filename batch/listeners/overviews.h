#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "batch/listeners/overview_writer.h"
#include "pictures/step_image.h"

namespace zelmo {

struct BatchOptions;

/// Draws a line of text on white, in a picture of this size.
using CaptionArtist =
    std::function<StepImage(const std::string& text, std::int32_t width, std::int32_t height)>;

/// All pictures on one sheet, each with its number and the name of its step. The caption's glyphs
/// are the bytes of the name.
Overview MakeSheet(const BatchOptions& options, CaptionArtist artist);

/// The pictures one after the other.
Overview MakeFilm(const BatchOptions& options);

}  // namespace zelmo
