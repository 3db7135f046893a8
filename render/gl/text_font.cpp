#include "render/gl/text_font.h"

#include <GL/glew.h>

#include "render/gl/glyphs.h"

namespace zelmo {

namespace {

constexpr GLsizei listCount = 256;
constexpr char faceName[] = "Arial";

}  // namespace

GlyphLists::GlyphLists() : base_(glGenLists(listCount)) {}

GlyphLists::~GlyphLists() {
    if (base_ != 0) {
        glDeleteLists(base_, listCount);
    }
}

GlFont TextFont::GetFont(std::uint32_t height, std::int32_t weight) {
    for (const Entry& entry : fonts_) {
        if (entry.requestedHeight == height && entry.font.weight == weight) {
            return entry.font;
        }
    }
    GlyphLists lists;
    const auto metrics = MakeGlyphLists(faceName, height, weight, lists.Base(), problem_);
    GlFont font =
        metrics ? GlFont{lists.Base(), metrics->cellHeight, metrics->averageWidth, faceName, weight}
                : GlFont{0, 0, 0, faceName, weight};
    fonts_.push_back({height, std::move(lists), font});
    return font;
}

}  // namespace zelmo
