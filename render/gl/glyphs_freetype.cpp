#include <GL/glew.h>
#include <fontconfig/fontconfig.h>
#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_OUTLINE_H
#include FT_TRUETYPE_TABLES_H

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "render/gl/glyphs.h"

namespace zelmo {

namespace {

constexpr std::uint32_t glyphCount = 255;
constexpr std::int32_t boldAbove = 550;  // faces come in two weights
constexpr FT_Pos unitsPerPixel = 64;

FT_Pos PixelFloor(FT_Pos units) {
    return units >> 6;
}

FT_Pos PixelCeil(FT_Pos units) {
    return (units + unitsPerPixel - 1) >> 6;
}

template <auto Free>
struct Freer {
    template <typename T>
    void operator()(T* object) const {
        Free(object);
    }
};

using FontConfig = std::unique_ptr<FcConfig, Freer<FcConfigDestroy>>;
using FontPattern = std::unique_ptr<FcPattern, Freer<FcPatternDestroy>>;
using FontLibrary = std::unique_ptr<FT_LibraryRec_, Freer<FT_Done_FreeType>>;
using FontFace = std::unique_ptr<FT_FaceRec_, Freer<FT_Done_Face>>;

struct FontFile {
    std::string path;
    int index = 0;
};

/// The file that the system has for a face and weight, or what it has in its place. The path is
/// empty if there is none.
FontFile FindFontFile(const std::string& face, std::int32_t weight) {
    FontFile file;
    const FontConfig config(FcInitLoadConfigAndFonts());
    const FontPattern wanted(FcPatternCreate());
    if (config == nullptr || wanted == nullptr) {
        return file;
    }
    FcPatternAddString(wanted.get(), FC_FAMILY, reinterpret_cast<const FcChar8*>(face.c_str()));
    FcPatternAddInteger(wanted.get(), FC_WEIGHT,
                        weight > boldAbove ? FC_WEIGHT_BOLD : FC_WEIGHT_REGULAR);
    FcPatternAddBool(wanted.get(), FC_SCALABLE, FcTrue);
    FcConfigSubstitute(config.get(), wanted.get(), FcMatchPattern);
    FcDefaultSubstitute(wanted.get());
    FcResult result = FcResultNoMatch;
    const FontPattern match(FcFontMatch(config.get(), wanted.get(), &result));
    FcChar8* path = nullptr;
    if (match == nullptr || FcPatternGetString(match.get(), FC_FILE, 0, &path) != FcResultMatch) {
        return file;
    }
    file.path = reinterpret_cast<const char*>(path);
    FcPatternGetInteger(match.get(), FC_INDEX, 0, &file.index);
    return file;
}

/// Null, with the reason in `problem`, if the file is of no use.
FontFace OpenFace(FT_Library library, const FontFile& file, std::string& problem) {
    FT_Face face = nullptr;
    if (FT_New_Face(library, file.path.c_str(), file.index, &face) != 0) {
        problem = "The font file " + file.path + " cannot be read";
        return nullptr;
    }
    FontFace owner(face);
    if (!FT_IS_SCALABLE(face)) {
        problem = "The font file " + file.path + " has glyphs of one size only";
        return nullptr;
    }
    return owner;
}

/// Extents of a line of text in pixels.
struct LineMetrics {
    FT_Long ascent = 0;
    FT_Long descent = 0;
    FT_Long averageWidth = 0;
};

/// Sets the size at which a line, as the desktop's fonts measure it, is no higher than `height`.
LineMetrics SetLineHeight(FT_Face face, std::uint32_t height) {
    const FT_Long em = face->units_per_EM;
    LineMetrics design{face->ascender, -face->descender, face->max_advance_width / 2};
    const auto* table = static_cast<const TT_OS2*>(FT_Get_Sfnt_Table(face, FT_SFNT_OS2));
    if (table != nullptr && table->usWinAscent + table->usWinDescent > 0) {
        design = {table->usWinAscent, table->usWinDescent, table->xAvgCharWidth};
    }
    const FT_Long line = std::max(design.ascent + design.descent, FT_Long{1});
    const auto limit = static_cast<FT_Long>(height);
    FT_Long size = FT_MulDiv(limit, em, line);
    if (size > 1 && FT_MulDiv(line, size, em) > limit) {
        --size;
    }
    FT_Set_Pixel_Sizes(face, 0, static_cast<FT_UInt>(size));
    return {FT_MulDiv(design.ascent, size, em), FT_MulDiv(design.descent, size, em),
            FT_MulDiv(design.averageWidth, size, em)};
}

/// A glyph as GL draws it: one bit a pixel, rows from the bottom up.
struct GlyphBitmap {
    FT_Long left = 0;    ///< pixels right of the pen
    FT_Long bottom = 0;  ///< pixels above the base line
    FT_Long width = 0;
    FT_Long height = 0;
    std::vector<GLubyte> rows;
};

/// Draws the outline that is loaded. All pixels that it touches belong to the bitmap, but what
/// reaches above or below the line is cut off.
GlyphBitmap DrawOutline(FT_Library library, FT_Outline& outline, const LineMetrics& metrics) {
    FT_BBox box;
    FT_Outline_Get_CBox(&outline, &box);
    GlyphBitmap glyph;
    glyph.left = PixelFloor(box.xMin);
    glyph.bottom = std::max(PixelFloor(box.yMin), -metrics.descent);
    glyph.width = PixelCeil(box.xMax) - glyph.left;
    glyph.height = std::min(PixelCeil(box.yMax), metrics.ascent) - glyph.bottom;
    if (glyph.width <= 0 || glyph.height <= 0) {
        return glyph;
    }
    const FT_Long rowBytes = (glyph.width + 7) / 8;
    glyph.rows.resize(static_cast<std::size_t>(rowBytes * glyph.height));
    FT_Bitmap bitmap{};
    bitmap.width = static_cast<unsigned>(glyph.width);
    bitmap.rows = static_cast<unsigned>(glyph.height);
    bitmap.pitch = static_cast<int>(-rowBytes);  // the bottom row first
    bitmap.buffer = glyph.rows.data();
    bitmap.pixel_mode = FT_PIXEL_MODE_MONO;
    FT_Outline_Translate(&outline, -glyph.left * unitsPerPixel, -glyph.bottom * unitsPerPixel);
    FT_Outline_Get_Bitmap(library, &outline, &bitmap);
    return glyph;
}

void RecordGlyph(GLuint list, const GlyphBitmap& glyph, float advance) {
    glNewList(list, GL_COMPILE);
    if (glyph.rows.empty()) {
        // A blank: drivers refuse a bitmap without any pixel, so it has one that is not set.
        const GLubyte empty = 0;
        glBitmap(1, 1, 0.0f, 0.0f, advance, 0.0f, &empty);
    } else {
        glBitmap(static_cast<GLsizei>(glyph.width), static_cast<GLsizei>(glyph.height),
                 static_cast<GLfloat>(-glyph.left), static_cast<GLfloat>(-glyph.bottom), advance,
                 0.0f, glyph.rows.data());
    }
    glEndList();
}

}  // namespace

std::optional<GlyphMetrics> MakeGlyphLists(std::string_view face, std::uint32_t height,
                                           std::int32_t weight, std::uint32_t listBase,
                                           std::string& problem) {
    const FontFile file = FindFontFile(std::string(face), weight);
    FT_Library rawLibrary = nullptr;
    if (file.path.empty() || FT_Init_FreeType(&rawLibrary) != 0) {
        problem = "There is no font for the labels of the pictures";
        return std::nullopt;
    }
    const FontLibrary library(rawLibrary);
    const FontFace font = OpenFace(library.get(), file, problem);
    if (font == nullptr) {
        return std::nullopt;
    }
    const LineMetrics metrics = SetLineHeight(font.get(), height);

    glPushClientAttrib(GL_CLIENT_PIXEL_STORE_BIT);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    for (std::uint32_t code = 0; code < glyphCount; ++code) {
        if (FT_Load_Char(font.get(), code, FT_LOAD_TARGET_MONO | FT_LOAD_NO_BITMAP) != 0) {
            continue;
        }
        FT_GlyphSlot slot = font->glyph;
        const GlyphBitmap glyph = DrawOutline(library.get(), slot->outline, metrics);
        RecordGlyph(listBase + code, glyph, static_cast<float>(PixelFloor(slot->advance.x)));
    }
    glPopClientAttrib();
    return GlyphMetrics{static_cast<std::int32_t>(metrics.ascent + metrics.descent),
                        static_cast<std::int32_t>(metrics.averageWidth)};
}

}  // namespace zelmo
