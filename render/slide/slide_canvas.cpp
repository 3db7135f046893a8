#include "render/slide/slide_canvas.h"

#include <GL/glew.h>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace zelmo {

namespace {

void SetColor(const InkColor& color) {
    glColor4f(color[0], color[1], color[2], color[3]);
}

}  // namespace

GlFont SlideCanvas::Font(double height, std::int32_t weight) {
    const double pixels = std::max(std::round(height * unit_), 1.0);
    return fonts_.GetFont(static_cast<std::uint32_t>(pixels), weight);
}

void SlideCanvas::Text(const std::string& text, const PixelPoint& start, const GlFont& font) {
    const double bottom = start.y - part_.bottom;
    const bool isOutside = bottom > part_.height + font.height || bottom < -font.height;
    if (font.listBase == 0 || isOutside) {
        return;
    }
    glColor4f(0.0f, 0.0f, 0.0f, 1.0f);
    glWindowPos2f(static_cast<float>(start.x - part_.left), static_cast<float>(bottom));
    glListBase(font.listBase);
    glCallLists(static_cast<GLsizei>(text.size()), GL_UNSIGNED_BYTE, text.data());
}

void SlideCanvas::CentredText(const std::string& text, const PixelPoint& middle,
                              const GlFont& font) {
    // Digits and capitals reach from the base line to about two thirds of a line's height.
    constexpr double middleAboveBase = 0.32;
    Text(text,
         {middle.x - AverageLength(text, font) * 0.5, middle.y - middleAboveBase * font.height},
         font);
}

void SlideCanvas::Box(const PixelPoint& lowerLeft, const PixelPoint& upperRight,
                      const InkColor& color) {
    glBegin(GL_QUADS);
    SetColor(color);
    Corner(lowerLeft, 0.0f);
    Corner({lowerLeft.x, upperRight.y}, 0.0f);
    Corner(upperRight, 0.0f);
    Corner({upperRight.x, lowerLeft.y}, 0.0f);
    glEnd();
}

void SlideCanvas::Line(const PixelPoint& from, const PixelPoint& to, double width,
                       const InkColor& color) {
    const double length = std::hypot(to.x - from.x, to.y - from.y);
    if (!(length > 0.0)) {
        return;
    }
    const double dx = -(to.y - from.y) / length * width * 0.5;
    const double dy = (to.x - from.x) / length * width * 0.5;
    glBegin(GL_QUADS);
    SetColor(color);
    Corner({from.x + dx, from.y + dy}, 0.0f);
    Corner({to.x + dx, to.y + dy}, 0.0f);
    Corner({to.x - dx, to.y - dy}, 0.0f);
    Corner({from.x - dx, from.y - dy}, 0.0f);
    glEnd();
}

void SlideCanvas::Mark(const PixelPoint& middle, double radius, float depth) {
    constexpr InkColor light{1.0f, 1.0f, 1.0f, 0.95f};
    constexpr InkColor dark{0.1f, 0.1f, 0.1f, 0.95f};
    constexpr InkColor darkEnd{0.1f, 0.1f, 0.1f, 0.0f};
    const double rim = radius * 0.625;
    // Each edge fades over a pixel.
    Ring(middle, 0.0, light, rim - 0.5, light, depth);
    Ring(middle, rim - 0.5, light, rim + 0.5, dark, depth);
    Ring(middle, rim + 0.5, dark, radius - 0.5, dark, depth);
    Ring(middle, radius - 0.5, dark, radius + 0.5, darkEnd, depth);
}

/// The corner as a clip coordinate of the viewport.
void SlideCanvas::Corner(const PixelPoint& place, float depth) const {
    glVertex3f(static_cast<float>(2.0 * (place.x - part_.left) / part_.width - 1.0),
               static_cast<float>(2.0 * (place.y - part_.bottom) / part_.height - 1.0), depth);
}

void SlideCanvas::Ring(const PixelPoint& middle, double inner, const InkColor& innerColor,
                       double outer, const InkColor& outerColor, float depth) const {
    constexpr int pieces = 48;
    inner = std::max(inner, 0.0);
    glBegin(GL_TRIANGLE_STRIP);
    for (int i = 0; i <= pieces; ++i) {
        const double angle = 2.0 * std::numbers::pi * i / pieces;
        const double x = std::cos(angle);
        const double y = std::sin(angle);
        SetColor(innerColor);
        Corner({middle.x + inner * x, middle.y + inner * y}, depth);
        SetColor(outerColor);
        Corner({middle.x + outer * x, middle.y + outer * y}, depth);
    }
    glEnd();
}

double AverageLength(const std::string& text, const GlFont& font) {
    return static_cast<double>(font.averageWidth) * static_cast<double>(text.size());
}

}  // namespace zelmo
