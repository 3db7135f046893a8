#include "render/overlays.h"

#include <GL/glew.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

#include "render/number_format.h"
#include "tests/render/gl_test.h"

namespace zelmo {
namespace {

class Overlays : public ::testing::Test {
protected:
    /// Adds a layer that only the legend shows.
    Layer& AddLayer(const std::string& label, std::array<float, 3> color, float alpha = 1.0f) {
        AppendLayer(model_.stack, std::make_unique<Layer>());
        Layer& layer = *model_.stack.layers.back();
        layer.label = label;
        layer.color = color;
        layer.alpha = alpha;
        ++model_.stack.layerCount;
        return layer;
    }

    /// Gives the model this many markers, in rows of ten, at different places of clip space.
    void AddMarkers(std::uint32_t count, float height) {
        markers_.vertices.resize(count);
        for (std::uint32_t k = 0; k < count; ++k) {
            float* position = markers_.vertices[k].position;
            const std::uint32_t column = k % 10;
            const std::uint32_t row = k / 10;
            position[0] = static_cast<float>(column) * 0.18f - 0.81f;
            position[1] = static_cast<float>(row) * 0.18f - 0.81f;
            position[2] = height;
        }
    }

    Pixels LegendPicture(int height) {
        const Canvas canvas(400, height);
        DrawLegend(model_, textFont_, 320, height);
        return canvas.Read();
    }

    /// A text alone on a canvas, with its corner at this pixel.
    Pixels TextPicture(int width, int height, const std::string& text, float x, float y,
                       const GlFont& font) {
        const Canvas canvas(width, height);
        glColor4f(0.0f, 0.0f, 0.0f, 1.0f);
        glWindowPos2f(x, y);
        glListBase(font.listBase);
        glCallLists(static_cast<GLsizei>(text.size()), GL_UNSIGNED_BYTE, text.data());
        return canvas.Read();
    }

    /// The same picture with white in place of everything left of a column.
    static Pixels RightOf(int column, Pixels picture) {
        const auto rowLength = static_cast<std::size_t>(picture.width);
        for (std::size_t start = 0; start < picture.pixels.size(); start += rowLength) {
            std::fill_n(picture.pixels.begin() + static_cast<std::ptrdiff_t>(start), column, white);
        }
        return picture;
    }

    ProcessModel model_;
    HeightMarkers markers_;
    TextFont textFont_;
};

TEST_F(Overlays, DrawTextAtPutsTheCornerOfTheTextAtTheProjectedPixel) {
    const GlFont font = textFont_.GetFont(30, 700);
    const Canvas canvas(400, 200);
    DrawTextAt("H", identity, {0.5f, -0.5f, 0.3f}, 7.0f, -4.0f, font);
    // (0.5 + 1) * 400 / 2 + 7 and (-0.5 + 1) * 200 / 2 - 4
    EXPECT_EQ(canvas.Read(), TextPicture(400, 200, "H", 307.0f, 46.0f, font));
}

TEST_F(Overlays, DrawTextAtCountsFromTheViewportsCorner) {
    const GlFont font = textFont_.GetFont(30, 700);
    const Canvas canvas(400, 200);
    glViewport(100, 50, 200, 100);
    DrawTextAt("H", identity, {0.0f, 0.0f, 0.0f}, 0.0f, 0.0f, font);
    EXPECT_EQ(canvas.Read(), TextPicture(400, 200, "H", 200.0f, 100.0f, font));
}

TEST_F(Overlays, DrawTextAtTakesTheMatrixColumnByColumnAndDividesByW) {
    const GlFont font = textFont_.GetFont(30, 700);
    const Matrix4 matrix{1.0f, 0.0f, 9.0f, 0.5f,  0.0f, 2.0f,  9.0f, 0.0f,
                         0.5f, 0.0f, 9.0f, 0.25f, 0.2f, -0.4f, 9.0f, 0.75f};
    const Canvas canvas(400, 200);
    DrawTextAt("H", matrix, {1.0f, 0.5f, 3.0f}, 0.0f, 0.0f, font);
    // clip x 2.7, y 0.6, w 2
    EXPECT_EQ(canvas.Read(), TextPicture(400, 200, "H", 470.0f, 130.0f, font));
    const Canvas nearer(400, 200);
    DrawTextAt("H", matrix, {-0.5f, 0.5f, 0.0f}, 0.0f, 0.0f, font);
    // clip x -0.3, y 0.6, w 0.5
    EXPECT_EQ(nearer.Read(), TextPicture(400, 200, "H", 80.0f, 220.0f, font));
}

TEST_F(Overlays, DrawTextAtDividesNothingByAWOfZero) {
    const GlFont font = textFont_.GetFont(30, 700);
    Matrix4 matrix = identity;
    matrix[15] = 0.0f;
    const Canvas canvas(400, 200);
    DrawTextAt("H", matrix, {0.0f, 0.0f, 0.0f}, 0.0f, 0.0f, font);
    EXPECT_EQ(canvas.Read(), TextPicture(400, 200, "H", 200.0f, 100.0f, font));
}

TEST_F(Overlays, DrawTextAtIsNotHiddenByTheModelAndAlwaysBlack) {
    TestTools tools;
    StackUploads uploads;
    const GlFont font = textFont_.GetFont(30, 700);
    const Canvas canvas(400, 200);
    glColor4f(1.0f, 0.0f, 0.0f, 1.0f);
    // Nearly as near as there is.
    AppendRectangle(model_, uploads, {1.0f, 1.0f, 0.0f}, -0.99f);
    const Camera camera = PlainCamera(2.0);
    model_.settings.windowWidth = 0.0f;
    RenderFrame(model_, uploads, camera, tools.Tools(), 400, 200);
    DrawTextAt("H", identity, {0.0f, 0.0f, 0.9f}, 0.0f, 0.0f, font);
    const PixelBox alone = TextPicture(400, 200, "H", 200.0f, 100.0f, font).BoxOf(black);
    const Pixels picture = canvas.Read();
    EXPECT_EQ(picture.At(alone.left, alone.bottom), black);
    EXPECT_NE(picture.At(alone.left - 3, alone.bottom), white) << "the rectangle is there";
    GLint program = -1;
    glGetIntegerv(GL_CURRENT_PROGRAM, &program);
    EXPECT_EQ(program, 0);
}

TEST_F(Overlays, DrawTextAtTakesAnEmptyText) {
    const GlFont font = textFont_.GetFont(30, 700);
    TakeGlErrors();
    const Canvas canvas(40, 20);
    DrawTextAt("", identity, {0.0f, 0.0f, 0.0f}, 0.0f, 0.0f, font);
    EXPECT_EQ(canvas.Read().Count(white), 800);
    EXPECT_EQ(TakeGlErrors(), static_cast<GLenum>(GL_NO_ERROR));
}

TEST_F(Overlays, PixelToClipCountsFromTheViewportsSizeAlone) {
    glViewport(10, 20, 320, 72);
    EXPECT_EQ(PixelToClip(0.0f, 0.0f), std::make_pair(-1.0f, -1.0f));
    EXPECT_EQ(PixelToClip(320.0f, 72.0f), std::make_pair(1.0f, 1.0f));
    EXPECT_EQ(PixelToClip(240.0f, 18.0f), std::make_pair(0.5f, -0.5f));
}

TEST_F(Overlays, ShowsTheFrontRowOfMarkersAloneWhereTheViewIsFlat) {
    AddMarkers(100, 0.0f);
    model_.settings.cameraAngle = 10.0f;
    EXPECT_EQ(ShownMarkerCount(model_.settings, markers_), 10);
    model_.settings.cameraAngle = 14.9f;
    EXPECT_EQ(ShownMarkerCount(model_.settings, markers_), 10);
    model_.settings.cameraAngle = 15.0f;
    EXPECT_EQ(ShownMarkerCount(model_.settings, markers_), 100);
    AddMarkers(0, 0.0f);
    model_.settings.cameraAngle = 0.0f;
    EXPECT_EQ(ShownMarkerCount(model_.settings, markers_), 0) << "no more than there are";
}

TEST_F(Overlays, LabelsTheFirstTenOfAHundredMarkersAtTenDegrees) {
    AddMarkers(100, 0.0f);
    const Camera camera = PlainCamera(1.0);
    model_.settings.cameraAngle = 10.0f;
    const Canvas flat(1000, 1000);
    DrawHeightLabels(model_, markers_, camera, textFont_);
    const PixelBox front = flat.Read().BoxOf(black);
    EXPECT_LT(front.top, 1000 * (1.0f - 0.81f) / 2.0f + 40.0f) << "nothing above the front row";
    EXPECT_LT(front.left, 100);
    EXPECT_GT(front.right, 900);
    model_.settings.cameraAngle = 15.0f;
    const Canvas steep(1000, 1000);
    DrawHeightLabels(model_, markers_, camera, textFont_);
    EXPECT_GT(steep.Read().BoxOf(black).top, 900);
}

/// A height above the substrate's top, and what its label says.
struct LabelledHeight {
    float height;
    const char* text;
};

TEST_F(Overlays, HeightLabelsTellTenthsOfNanometresAboveTheSubstrate) {
    const GlFont font = textFont_.GetFont(24, 900);
    const Camera camera = PlainCamera(2.0);
    model_.settings.cameraAngle = 30.0f;
    model_.stack.substrateThickness = 2.0f;
    for (const auto& [height, text] :
         {LabelledHeight{0.25f, "2,500"}, LabelledHeight{0.0f, "0"},
          LabelledHeight{-0.5f, "-5,000"}, LabelledHeight{100.0f, "1,000,000"},
          LabelledHeight{-0.00005f, "0"}, LabelledHeight{0.125f, "1,250"}}) {
        markers_.vertices.assign(1, MarkerVertex{});
        float* position = markers_.vertices[0].position;
        position[0] = 0.5f;
        position[1] = -0.5f;
        position[2] = model_.stack.substrateThickness + height;
        // A matrix that leaves the height out, so that the label's place does not depend on it.
        Camera flat = camera;
        flat.transform[10] = 0.0f;
        const Canvas canvas(800, 200);
        DrawHeightLabels(model_, markers_, flat, textFont_);
        const float width = 13.0f * static_cast<float>(std::string(text).size());
        EXPECT_EQ(canvas.Read(),
                  TextPicture(800, 200, text, 600.0f - width * 0.5f, 50.0f + 11.5f, font))
            << text;
    }
}

TEST_F(Overlays, HeightLabelsOfHeightsWithoutANumberDoNoHarm) {
    AddMarkers(3, std::nanf(""));
    markers_.vertices[1].position[2] = std::numeric_limits<float>::infinity();
    markers_.vertices[2].position[2] = 1e30f;
    model_.settings.cameraAngle = 30.0f;
    const Camera camera(100.0, 70.0, 10.0, 30.0);
    const Canvas canvas(200, 100);
    DrawHeightLabels(model_, markers_, camera, textFont_);
    EXPECT_GT(canvas.Read().Count(white), 0);
}

TEST_F(Overlays, WidthLabelStandsCentredBelowTheFrontEdge) {
    const GlFont font = textFont_.GetFont(32, 700);
    Camera camera = PlainCamera(2.0);
    camera.transform[0] = 0.01f;  // x of 50 comes to 0.5
    camera.transform[13] = 0.2f;
    model_.settings.windowWidth = 100.0f;
    const Canvas canvas(800, 200);
    DrawWidthLabel(model_, camera, textFont_);
    const std::string text = "W = 100.00 um";
    const float width = static_cast<float>(font.averageWidth) * static_cast<float>(text.size());
    EXPECT_EQ(canvas.Read(), TextPicture(800, 200, text, 600.0f - width * 0.5f,
                                         120.0f - static_cast<float>(font.height) - 1.0f, font));
}

TEST_F(Overlays, WidthLabelChangesItsUnitAtAFifthOfAMicrometre) {
    const GlFont font = textFont_.GetFont(32, 700);
    const Camera camera = PlainCamera(2.0);
    struct Case {
        float width;
        const char* text;
    };
    for (const auto& [width, text] :
         {Case{0.2f, "W = 0.20 um"}, Case{0.19f, "W = 190.00 nm"}, Case{12.345f, "W = 12.35 um"},
          Case{0.0123f, "W = 12.30 nm"}, Case{std::nextafter(0.2f, 0.0f), "W = 200.00 nm"}}) {
        model_.settings.windowWidth = width;
        Camera flat = camera;
        flat.transform[0] = 0.0f;
        const Canvas canvas(800, 200);
        DrawWidthLabel(model_, flat, textFont_);
        const float length =
            static_cast<float>(font.averageWidth) * static_cast<float>(std::string(text).size());
        EXPECT_EQ(canvas.Read(), TextPicture(800, 200, text, 400.0f - length * 0.5f,
                                             100.0f - static_cast<float>(font.height) - 1.0f, font))
            << text;
    }
}

TEST_F(Overlays, LegendHasExactSwatchesFromTheBottomUp) {
    AddLayer("", {1.0f, 0.0f, 0.0f});
    AddLayer("", {0.0f, 0.4f, 0.2f});
    AddLayer("", {0.8f, 0.6f, 1.0f});
    const Pixels picture = LegendPicture(200);
    EXPECT_EQ(picture.BoxOf(Pixel{255, 0, 0, 255}), (PixelBox{0, 0, 72, 36}));
    EXPECT_EQ(picture.Count(Pixel{255, 0, 0, 255}), 72 * 36);
    EXPECT_EQ(picture.BoxOf(Pixel{0, 102, 51, 255}), (PixelBox{0, 36, 72, 72}));
    EXPECT_EQ(picture.Count(Pixel{0, 102, 51, 255}), 72 * 36);
    EXPECT_EQ(picture.BoxOf(Pixel{204, 153, 255, 255}), (PixelBox{0, 72, 72, 108}));
    EXPECT_EQ(picture.Count(Pixel{204, 153, 255, 255}), 72 * 36);
}

TEST_F(Overlays, LegendBlendsTranslucentSwatchesWithTheWhite) {
    AddLayer("", {0.0f, 0.0f, 1.0f}, 0.2f);
    const Pixels picture = LegendPicture(100);
    const Pixel swatch = picture.At(30, 18);
    EXPECT_EQ(swatch.red, 204);
    EXPECT_EQ(swatch.green, 204);
    EXPECT_EQ(swatch.blue, 255);
    EXPECT_EQ(picture.BoxOf([](const Pixel& pixel) { return pixel.red != 255; }),
              (PixelBox{0, 0, 72, 36}));
}

TEST_F(Overlays, LegendGivesEmptySlotsNoRoom) {
    AddLayer("", {1.0f, 0.0f, 0.0f});
    AddLayer("", {0.0f, 1.0f, 0.0f});
    AddLayer("", {0.0f, 0.0f, 1.0f});
    model_.stack.layers[1].reset();
    model_.stack.layerCount = 2;
    const Pixels picture = LegendPicture(200);
    EXPECT_EQ(picture.BoxOf(Pixel{255, 0, 0, 255}), (PixelBox{0, 0, 72, 36}));
    EXPECT_EQ(picture.BoxOf(Pixel{0, 0, 255, 255}), (PixelBox{0, 36, 72, 72}));
}

TEST_F(Overlays, LegendWritesTheLabelBesideTheSwatch) {
    AddLayer("", {1.0f, 0.0f, 0.0f});
    AddLayer("Oxide", {0.0f, 1.0f, 0.0f});
    const GlFont font = textFont_.GetFont(30, 700);
    EXPECT_EQ(RightOf(72, LegendPicture(200)), TextPicture(400, 200, "Oxide", 77.0f, 38.0f, font));
}

TEST_F(Overlays, LegendCutsLabelsThatAreTooLong) {
    const GlFont font = textFont_.GetFont(30, 700);
    const int cut = 243 / font.averageWidth - 3;
    ASSERT_EQ(cut, 11);
    struct Case {
        const char* label;
        const char* text;
    };
    for (const auto& [label, text] :
         {Case{"abcdefghij", "abcdefghij"}, Case{"abcdefghijk", "abcdefghijk..."},
          Case{"abcdefghijkl", "abcdefghijk..."}, Case{"abcdefghijklmnopqrst", "abcdefghijk..."},
          Case{"", ""}}) {
        model_.stack.layers.clear();
        model_.stack.layerCount = 0;
        AddLayer(label, {1.0f, 0.0f, 0.0f});
        EXPECT_EQ(RightOf(72, LegendPicture(100)), TextPicture(400, 100, text, 77.0f, 2.0f, font))
            << label;
    }
}

TEST_F(Overlays, LegendOfAStripWithoutRoomHasDotsAlone) {
    AddLayer("abcdef", {1.0f, 0.0f, 0.0f});
    const GlFont font = textFont_.GetFont(30, 700);
    for (const int strip : {77, 90, 128, 72}) {
        const Canvas canvas(400, 100);
        DrawLegend(model_, textFont_, strip, 100);
        EXPECT_EQ(RightOf(72, canvas.Read()), TextPicture(400, 100, "...", 77.0f, 2.0f, font));
    }
}

TEST_F(Overlays, LegendOfThirtyLayersFillsAPictureOfItsHeight) {
    for (int i = 0; i < 30; ++i) {
        AddLayer("", {i % 2 == 0 ? 1.0f : 0.0f, 0.0f, 0.0f});
    }
    const Pixels picture = LegendPicture(1080);
    for (int i = 0; i < 30; ++i) {
        const Pixel color{static_cast<std::uint8_t>(i % 2 == 0 ? 255 : 0), 0, 0, 255};
        EXPECT_EQ(picture.At(40, i * 36), color) << i;
        EXPECT_EQ(picture.At(40, i * 36 + 35), color) << i;
    }
}

TEST_F(Overlays, LegendShrinksWhereItDoesNotFit) {
    for (int i = 0; i < 4; ++i) {
        AddLayer("", {i % 2 == 0 ? 1.0f : 0.0f, 0.0f, 0.0f});
    }
    const Pixels picture = LegendPicture(72);
    for (int i = 0; i < 4; ++i) {
        const Pixel color{static_cast<std::uint8_t>(i % 2 == 0 ? 255 : 0), 0, 0, 255};
        EXPECT_EQ(picture.At(40, i * 18), color) << i;
        EXPECT_EQ(picture.At(40, i * 18 + 17), color) << i;
    }
    EXPECT_EQ(picture.BoxOf([](const Pixel& p) { return p != white; }), (PixelBox{0, 0, 72, 72}));
}

TEST_F(Overlays, LegendLeavesTheViewportAtTheStrip) {
    LegendPicture(100);
    GLint viewport[4] = {};
    glGetIntegerv(GL_VIEWPORT, viewport);
    EXPECT_EQ(viewport[0], 0);
    EXPECT_EQ(viewport[1], 0);
    EXPECT_EQ(viewport[2], 320);
    EXPECT_EQ(viewport[3], 100);
}

}  // namespace
}  // namespace zelmo
