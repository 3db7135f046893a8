#include <GL/glew.h>
#include <windows.h>

#include <string>

#include "render/gl/glyphs.h"

namespace zelmo {

namespace {

constexpr DWORD glyphCount = 255;

/// A font, selected into a device context for as long as this lives.
class SelectedFont {
public:
    SelectedFont(HDC deviceContext, std::string_view face, std::uint32_t height,
                 std::int32_t weight)
        : deviceContext_(deviceContext),
          font_(CreateFontA(static_cast<int>(height), 0, 0, 0, weight, FALSE, FALSE, FALSE,
                            ANSI_CHARSET, OUT_TT_PRECIS, CLIP_DEFAULT_PRECIS, ANTIALIASED_QUALITY,
                            FF_DONTCARE | DEFAULT_PITCH, std::string(face).c_str())),
          previous_(font_ != nullptr ? SelectObject(deviceContext, font_) : nullptr) {}
    ~SelectedFont() {
        if (previous_ != nullptr) {
            SelectObject(deviceContext_, previous_);
        }
        if (font_ != nullptr) {
            DeleteObject(font_);
        }
    }
    SelectedFont(const SelectedFont&) = delete;
    SelectedFont& operator=(const SelectedFont&) = delete;

    bool IsSelected() const { return previous_ != nullptr; }

private:
    HDC deviceContext_;
    HFONT font_;
    HGDIOBJ previous_;
};

void RecordBlank(GLuint list, GLfloat advance) {
    const GLubyte empty = 0;
    glNewList(list, GL_COMPILE);
    glBitmap(1, 1, 0.0f, 0.0f, advance, 0.0f, &empty);
    glEndList();
}

/// Some drivers refuse the bitmap without any pixel that the system records for a blank, and the
/// blank then has no width: record those again.
void RecordBlanks(HDC deviceContext, GLuint listBase) {
    const MAT2 identity{{0, 1}, {0, 0}, {0, 0}, {0, 1}};
    for (DWORD code = 0; code < glyphCount; ++code) {
        GLYPHMETRICS metrics{};
        const DWORD size =
            GetGlyphOutlineW(deviceContext, code, GGO_BITMAP, &metrics, 0, nullptr, &identity);
        if (size == 0) {
            RecordBlank(listBase + code, static_cast<GLfloat>(metrics.gmCellIncX));
        }
    }
    while (glGetError() != GL_NO_ERROR) {
    }
}

}  // namespace

std::optional<GlyphMetrics> MakeGlyphLists(std::string_view face, std::uint32_t height,
                                           std::int32_t weight, std::uint32_t listBase,
                                           std::string& problem) {
    const HDC deviceContext = wglGetCurrentDC();
    const SelectedFont font(deviceContext, face, height, weight);
    TEXTMETRICW metrics{};
    if (!font.IsSelected() || GetTextMetricsW(deviceContext, &metrics) == FALSE) {
        problem = "There is no font for the labels of the pictures";
        return std::nullopt;
    }
    wglUseFontBitmapsW(deviceContext, 0, glyphCount, listBase);
    RecordBlanks(deviceContext, listBase);
    return GlyphMetrics{metrics.tmHeight, metrics.tmAveCharWidth};
}

}  // namespace zelmo
