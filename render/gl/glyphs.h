#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zelmo {

/// What a font measures, in pixels.
struct GlyphMetrics {
    std::int32_t cellHeight = 0;
    std::int32_t averageWidth = 0;
};

/// Fills the 255 display lists from `listBase` on with the glyphs of the character codes 0 to 254
/// of a face. `height` is the height of a line in pixels that the font may not exceed, `weight` is
/// from 100 (thin) to 900 (heavy). Calling a list draws the glyph at the raster position, which
/// then moves on by the glyph's width. Nothing, with the reason in `problem`, if the system has no
/// font.
std::optional<GlyphMetrics> MakeGlyphLists(std::string_view face, std::uint32_t height,
                                           std::int32_t weight, std::uint32_t listBase,
                                           std::string& problem);

}  // namespace zelmo
