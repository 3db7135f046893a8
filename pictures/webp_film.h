#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "pictures/step_image.h"

namespace zelmo {

/// How a film of pictures is shown.
struct FilmTiming {
    std::int32_t millisecondsEach = 800;
    std::int32_t loops = 0;  ///< how often it is shown; 0: without end
};

/// What a film has at most: the times in its file have 24 bits each, and are added up in 31.
constexpr std::int32_t longestFrame = 60'000;
constexpr std::int32_t mostLoops = 65'535;
constexpr std::int32_t widestFilm = 16'383;  ///< pixels, and the same in height

/// The bytes of a film (an animated WebP file) of `count` pictures, which `pictureOf` makes one
/// after the other. It has the size of the greatest width and height of them, which are given;
/// smaller pictures stand in its middle. Small rather than exact: edges stay sharp. Empty where
/// there is no picture, or WebP cannot hold one so large. Throws std::bad_alloc, and what
/// `pictureOf` throws.
std::vector<std::uint8_t> WebpFilm(std::int32_t width, std::int32_t height, std::size_t count,
                                   const std::function<StepImage(std::size_t)>& pictureOf,
                                   const FilmTiming& timing);

}  // namespace zelmo
