#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace zelmo {

/// A bitmap font in GL display lists, one a character code. A value: the lists belong to the
/// TextFont that it came from.
struct GlFont {
    std::uint32_t listBase = 0;  ///< first of 256 lists; 0 where the system has no font
    std::int32_t height = 0;     ///< measured height of a line in pixels
    std::int32_t averageWidth = 0;
    std::string faceName;
    std::int32_t weight = 0;  ///< as it was asked for
};

/// 256 display lists in a row.
class GlyphLists {
public:
    GlyphLists();
    ~GlyphLists();
    GlyphLists(GlyphLists&& other) noexcept : base_(std::exchange(other.base_, 0)) {}
    GlyphLists& operator=(GlyphLists&&) = delete;

    std::uint32_t Base() const { return base_; }

private:
    std::uint32_t base_ = 0;
};

/// The fonts that have been asked for so far. Needs the GL context current whenever a new one is
/// asked for, and at its end.
class TextFont {
public:
    /// The font of this height and weight, made at the first request. Where the system has none it
    /// has no lists and measures nothing.
    GlFont GetFont(std::uint32_t height, std::int32_t weight);

    /// Why there is no font; empty as long as every one that was asked for could be made.
    const std::string& Problem() const { return problem_; }

private:
    struct Entry {
        std::uint32_t requestedHeight = 0;  ///< the font itself may be a pixel lower
        GlyphLists lists;
        GlFont font;
    };
    std::vector<Entry> fonts_;
    std::string problem_;
};

}  // namespace zelmo
