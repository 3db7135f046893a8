#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "render/gl/text_font.h"
#include "render/slide/slide_layout.h"

namespace zelmo {

using InkColor = std::array<float, 4>;  ///< red, green, blue, opacity
constexpr InkColor blackInk{0.0f, 0.0f, 0.0f, 1.0f};

/// Draws flat things on a part of a picture, which the viewport must be. Places are pixels of the
/// whole picture; what lies elsewhere is not drawn. No shader may be current.
class SlideCanvas {
public:
    SlideCanvas(const PixelRect& part, double unit, TextFont& fonts)
        : part_(part), unit_(unit), fonts_(fonts) {}

    double Unit() const { return unit_; }

    /// The font whose lines are so high, in units.
    GlFont Font(double height, std::int32_t weight);

    /// A text in black that begins at this place of its base line.
    void Text(const std::string& text, const PixelPoint& start, const GlFont& font);

    /// The same with the middle of the text, by the font's average width, at this place.
    void CentredText(const std::string& text, const PixelPoint& middle, const GlFont& font);

    void Box(const PixelPoint& lowerLeft, const PixelPoint& upperRight, const InkColor& color);

    void Line(const PixelPoint& from, const PixelPoint& to, double width, const InkColor& color);

    /// A round mark with a dark rim, so many pixels from its middle to its edge. `depth` is a clip
    /// coordinate.
    void Mark(const PixelPoint& middle, double radius, float depth);

private:
    void Corner(const PixelPoint& place, float depth) const;
    void Ring(const PixelPoint& middle, double inner, const InkColor& innerColor, double outer,
              const InkColor& outerColor, float depth) const;

    PixelRect part_;
    double unit_;
    TextFont& fonts_;
};

/// How long a text is by the font's average width, in pixels.
double AverageLength(const std::string& text, const GlFont& font);

}  // namespace zelmo
