#include <GL/glew.h>
#include <fontconfig/fontconfig.h>
#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_TRUETYPE_TABLES_H

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "render/glyphs.h"

namespace zelmo {

namespace {

constexpr std::uint32_t glyphCount = 255;

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
    FcPatternAddInteger(wanted.get(), FC_WEIGHT, FcWeightFromOpenType(weight));
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

/// Extents of a face in its own units, as the desktop's font mapper takes them.
struct DesignMetrics {
    FT_Long unitsPerEm = 0;
    FT_Long ascent = 0;
    FT_Long descent = 0;
    FT_Long averageWidth = 0;
};

DesignMetrics ReadDesignMetrics(FT_Face face) {
    const auto* table = static_cast<const TT_OS2*>(FT_Get_Sfnt_Table(face, FT_SFNT_OS2));
    if (table == nullptr || table->usWinAscent + table->usWinDescent == 0) {
        return {face->units_per_EM, face->ascender, -face->descender, face->max_advance_width / 2};
    }
    return {face->units_per_EM, table->usWinAscent, table->usWinDescent, table->xAvgCharWidth};
}

/// The em size in pixels at which a line is no higher than `height`.
FT_Long EmSize(const DesignMetrics& design, std::uint32_t height) {
    const FT_Long lineHeight = design.ascent + design.descent;
    const FT_Long size = FT_MulDiv(static_cast<FT_Long>(height), design.unitsPerEm, lineHeight);
    const bool tooHigh =
        FT_MulDiv(lineHeight, size, design.unitsPerEm) > static_cast<FT_Long>(height);
    return tooHigh && size > 1 ? size - 1 : size;
}

/// Records the drawing of the glyph that is loaded. GL takes the rows from the bottom up, FreeType
/// has them from the top down.
void RecordGlyph(GLuint list, const FT_GlyphSlotRec& glyph) {
    const FT_Bitmap& bitmap = glyph.bitmap;
    const std::size_t rowBytes = (bitmap.width + 7) / 8;
    std::vector<GLubyte> rows;
    for (unsigned row = bitmap.rows; row-- > 0;) {
        const unsigned char* start =
            bitmap.buffer + static_cast<std::ptrdiff_t>(row) * bitmap.pitch;
        rows.insert(rows.end(), start, start + rowBytes);
    }
    const auto advance = static_cast<GLfloat>(glyph.advance.x >> 6);
    glNewList(list, GL_COMPILE);
    if (rows.empty()) {
        // A blank: drivers refuse a bitmap without any pixel, so it has one that is not set.
        const GLubyte empty = 0;
        glBitmap(1, 1, 0.0f, 0.0f, advance, 0.0f, &empty);
    } else {
        const auto height = static_cast<GLsizei>(bitmap.rows);
        glBitmap(static_cast<GLsizei>(bitmap.width), height,
                 static_cast<GLfloat>(-glyph.bitmap_left),
                 static_cast<GLfloat>(height - glyph.bitmap_top), advance, 0.0f, rows.data());
    }
    glEndList();
}

}  // namespace

GlyphMetrics MakeGlyphLists(std::string_view face, std::uint32_t height, std::int32_t weight,
                            std::uint32_t listBase) {
    const FontFile file = FindFontFile(std::string(face), weight);
    FT_Library rawLibrary = nullptr;
    FT_Face rawFace = nullptr;
    if (file.path.empty() || FT_Init_FreeType(&rawLibrary) != 0) {
        throw std::runtime_error("There is no font for the labels of the pictures");
    }
    const FontLibrary library(rawLibrary);
    if (FT_New_Face(library.get(), file.path.c_str(), file.index, &rawFace) != 0) {
        throw std::runtime_error("The font file " + file.path + " cannot be read");
    }
    const FontFace font(rawFace);
    const DesignMetrics design = ReadDesignMetrics(font.get());
    const FT_Long size = EmSize(design, height);
    FT_Set_Pixel_Sizes(font.get(), 0, static_cast<FT_UInt>(size));

    glPushClientAttrib(GL_CLIENT_PIXEL_STORE_BIT);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    for (std::uint32_t code = 0; code < glyphCount; ++code) {
        if (FT_Load_Char(font.get(), code, FT_LOAD_RENDER | FT_LOAD_TARGET_MONO) == 0) {
            RecordGlyph(listBase + code, *font->glyph);
        }
    }
    glPopClientAttrib();

    const auto pixels = [&](FT_Long units) {
        return static_cast<std::int32_t>(FT_MulDiv(units, size, design.unitsPerEm));
    };
    return {pixels(design.ascent) + pixels(design.descent), pixels(design.averageWidth)};
}

}  // namespace zelmo
