#include "render/gl/text_font.h"

#include <GL/glew.h>

#include <string>

#include "render/overlays.h"
#include "tests/render/gl_test.h"

namespace zelmo {
namespace {

struct FontSize {
    std::uint32_t height;
    std::int32_t weight;
};
constexpr FontSize labelSizes[] = {{24, 900}, {32, 700}, {30, 700}};

/// What a text leaves on a canvas of its own, and where the raster position is then.
struct DrawnText {
    Pixels pixels;
    int advance = 0;
};

DrawnText Draw(const std::string& text, const GlFont& font) {
    const Canvas canvas(300, 80);
    glWindowPos2f(10.0f, 20.0f);
    glColor4f(0.0f, 0.0f, 0.0f, 1.0f);
    glWindowPos2f(10.0f, 20.0f);
    glListBase(font.listBase);
    glCallLists(static_cast<GLsizei>(text.size()), GL_UNSIGNED_BYTE, text.data());
    GLint position[4] = {};
    glGetIntegerv(GL_CURRENT_RASTER_POSITION, position);
    return {canvas.Read(), position[0] - 10};
}

TEST(TextFont, MeasuresTheLabelSizes) {
    TextFont textFont;
    for (const FontSize& size : labelSizes) {
        const GlFont font = textFont.GetFont(size.height, size.weight);
        EXPECT_EQ(font.faceName, "Arial");
        EXPECT_EQ(font.weight, size.weight);
        EXPECT_GE(font.height, static_cast<std::int32_t>(size.height) - 2);
        EXPECT_LE(font.height, static_cast<std::int32_t>(size.height));
        EXPECT_GT(font.averageWidth, font.height / 3);
        EXPECT_LT(font.averageWidth, font.height);
    }
}

TEST(TextFont, HasTheMetricsOfTheDesktop) {
    // Of Liberation Sans, and of the face that it stands for.
    TextFont textFont;
    const GlFont heights = textFont.GetFont(24, 900);
    EXPECT_EQ(heights.height, 23);
    EXPECT_EQ(heights.averageWidth, 13);
    const GlFont width = textFont.GetFont(32, 700);
    EXPECT_EQ(width.height, 32);
    EXPECT_EQ(width.averageWidth, 18);
    const GlFont legend = textFont.GetFont(30, 700);
    EXPECT_EQ(legend.height, 30);
    EXPECT_EQ(legend.averageWidth, 17);
}

TEST(TextFont, MakesASizeOnceWhateverItMeasures) {
    TextFont textFont;
    const GlFont first = textFont.GetFont(24, 900);
    ASSERT_NE(first.height, 24) << "the size that measures less than was asked for";
    const int made = CountGlObjects();
    EXPECT_EQ(textFont.GetFont(24, 900).listBase, first.listBase);
    EXPECT_EQ(CountGlObjects(), made);
}

TEST(TextFont, TellsSizesAndWeightsApart) {
    TextFont textFont;
    const GlFont a = textFont.GetFont(24, 900);
    const GlFont b = textFont.GetFont(24, 700);
    const GlFont c = textFont.GetFont(23, 900);
    EXPECT_NE(a.listBase, b.listBase);
    EXPECT_NE(a.listBase, c.listBase);
    EXPECT_EQ(c.height, a.height) << "a font is not found by the height that it measures";
    EXPECT_EQ(textFont.GetFont(24, 700).listBase, b.listBase);
}

TEST(TextFont, DeletesItsLists) {
    const int before = CountGlObjects();
    GLuint base = 0;
    {
        TextFont textFont;
        base = textFont.GetFont(24, 900).listBase;
        textFont.GetFont(30, 700);
        EXPECT_TRUE(glIsList(base));
        EXPECT_TRUE(glIsList(base + 255));
        EXPECT_GE(CountGlObjects() - before, 512);
    }
    EXPECT_FALSE(glIsList(base));
    EXPECT_FALSE(glIsList(base + 255));
    EXPECT_EQ(CountGlObjects(), before);
}

TEST(TextFont, LeavesNoErrorOfOpenGl) {
    TakeGlErrors();
    TextFont textFont;
    textFont.GetFont(24, 900);
    EXPECT_EQ(TakeGlErrors(), static_cast<GLenum>(GL_NO_ERROR));
}

TEST(TextFont, GivesBlanksTheirWidth) {
    TextFont textFont;
    for (const FontSize& size : labelSizes) {
        const GlFont font = textFont.GetFont(size.height, size.weight);
        const DrawnText blank = Draw(" ", font);
        EXPECT_EQ(blank.pixels.Count(white), 300 * 80);
        EXPECT_GT(blank.advance, font.height / 6);
        EXPECT_LT(blank.advance, font.averageWidth);
        EXPECT_EQ(Draw("\xA0", font).advance, blank.advance) << "the blank that does not break";
        EXPECT_EQ(Draw("a b", font).advance,
                  Draw("a", font).advance + blank.advance + Draw("b", font).advance);
    }
}

TEST(TextFont, DrawsInkWithinTheLine) {
    TextFont textFont;
    for (const FontSize& size : labelSizes) {
        const GlFont font = textFont.GetFont(size.height, size.weight);
        for (int code = 33; code < 127; ++code) {
            const DrawnText glyph = Draw(std::string(1, static_cast<char>(code)), font);
            const PixelBox box = glyph.pixels.BoxOf(black);
            ASSERT_LT(box.left, box.right) << "code " << code << " has ink";
            EXPECT_EQ(glyph.pixels.Count(white) + glyph.pixels.Count(black), 300 * 80)
                << "no half tones";
            EXPECT_GT(glyph.advance, 0);
            EXPECT_GE(box.bottom, 20 - font.height / 4) << code;
            EXPECT_LE(box.top, 20 + font.height) << code;
        }
    }
}

TEST(TextFont, StandsOnTheBaseLine) {
    TextFont textFont;
    const GlFont font = textFont.GetFont(30, 700);
    EXPECT_EQ(Draw("H", font).pixels.BoxOf(black).bottom, 20);
    EXPECT_LT(Draw("p", font).pixels.BoxOf(black).bottom, 20);
    EXPECT_GT(Draw("'", font).pixels.BoxOf(black).bottom, 25);
}

TEST(TextFont, DrawsDigitsOfOneWidth) {
    TextFont textFont;
    const GlFont font = textFont.GetFont(24, 900);
    for (char digit = '1'; digit <= '9'; ++digit) {
        EXPECT_EQ(Draw(std::string(1, digit), font).advance, Draw("0", font).advance);
    }
}

TEST(TextFont, TakesCodesAboveAsciiAsLatinLetters) {
    TextFont textFont;
    const GlFont font = textFont.GetFont(32, 700);
    const PixelBox plain = Draw("u", font).pixels.BoxOf(black);
    const PixelBox dotted = Draw("\xFC", font).pixels.BoxOf(black);
    EXPECT_EQ(dotted.left, plain.left);
    EXPECT_EQ(dotted.bottom, plain.bottom);
    EXPECT_GT(dotted.top, plain.top) << "u with two dots";
    EXPECT_EQ(Draw("\xFC", font).advance, Draw("u", font).advance);
}

TEST(TextFont, LeavesTheLastCodeEmpty) {
    TextFont textFont;
    const DrawnText last = Draw("\xFF", textFont.GetFont(32, 700));
    EXPECT_EQ(last.advance, 0);
    EXPECT_EQ(last.pixels.Count(white), 300 * 80);
    EXPECT_GT(Draw("\xFE", textFont.GetFont(32, 700)).advance, 0);
}

}  // namespace
}  // namespace zelmo
