#include "render/frame_renderer.h"

#include <GL/glew.h>

#include <cmath>

#include "tests/render/gl_test.h"

namespace zelmo {
namespace {

std::array<GLint, 4> Viewport() {
    std::array<GLint, 4> viewport{};
    glGetIntegerv(GL_VIEWPORT, viewport.data());
    return viewport;
}

/// Near black: ink, or the rim of a marker.
bool IsDark(const Pixel& pixel) {
    return pixel.red < 128 && pixel.green < 128 && pixel.blue < 128;
}

bool IsReddish(const Pixel& pixel) {
    return pixel.red > 150 && pixel.green < 100 && pixel.blue < 100;
}

class Frame : public ::testing::Test {
protected:
    Frame() {
        model_.settings.windowWidth = 100.0f;
        model_.settings.cameraAngle = 30.0f;
    }

    void AddMarkers(std::uint32_t count) {
        std::vector<MarkerVertex>& vertices = uploads_.markers.vertices;
        vertices.resize(count);
        for (std::uint32_t k = 0; k < count; ++k) {
            // Too far apart to touch: columns of 0.18, rows of 0.18, from the lower left.
            const std::uint32_t column = k % 10;
            const std::uint32_t row = k / 10;
            vertices[k].position[0] = static_cast<float>(column) * 0.18f - 0.81f;
            vertices[k].position[1] = static_cast<float>(row) * 0.18f - 0.81f;
        }
        uploads_.markerVertices.Upload(std::as_bytes(std::span(vertices)));
    }

    Pixels Picture(const Camera& camera, int width, int height) {
        const Canvas canvas(width, height);
        glClearColor(0.3f, 0.3f, 0.3f, 0.3f);
        glClear(GL_COLOR_BUFFER_BIT);
        RenderFrame(model_, uploads_, camera, tools_.Tools(), width, height);
        return canvas.Read();
    }

    /// Markers are points without labels here: the labels' font is drawn in no viewport's place.
    int CountMarkers(float angle) {
        model_.settings.cameraAngle = angle;
        model_.settings.showHeights = true;
        const Pixels picture = Picture(PlainCamera(1.0), 1000, 1000);
        int count = 0;
        for (int row = 0; row < 10; ++row) {
            for (int column = 0; column < 10; ++column) {
                const float x = (static_cast<float>(column) * 0.18f + 0.19f) * 500.0f;
                const float y = (static_cast<float>(row) * 0.18f + 0.19f) * 500.0f;
                // The rim, to the right of the centre.
                count += IsDark(picture.At(static_cast<int>(x) + 6, static_cast<int>(y)));
            }
        }
        return count;
    }

    TestTools tools_;
    ProcessModel model_;
    StackUploads uploads_;
};

TEST_F(Frame, WithoutLayersHasTheWidthLabelAloneOnWhite) {
    // A view that the limit of 5 to 1 gives a border below the front edge, where the label stands.
    const Camera camera(100.0, 20.0, 2.0, 30.0);
    const Pixels picture = Picture(camera, 1920, 384);
    const PixelBox ink = picture.BoxOf([](const Pixel& pixel) { return pixel != white; });
    EXPECT_EQ(picture.Count(white) + picture.Count(black), 1920 * 384);
    EXPECT_GT(picture.Count(black), 500);
    EXPECT_NEAR((ink.left + ink.right) / 2.0, 960.0, 40.0) << "centred by the average width";
    EXPECT_LE(ink.top - ink.bottom, 32);
    EXPECT_LT(ink.top, 384 / 4);
}

TEST_F(Frame, ClearsTheWholeBufferToOpaqueWhite) {
    model_.settings.showLegend = true;
    const Pixels picture = Picture(PlainCamera(4.0), 800, 400);
    for (const auto& [x, y] : {std::pair{0, 0}, {799, 0}, {0, 399}, {799, 399}, {400, 200}}) {
        EXPECT_EQ(picture.At(x, y), white);
    }
}

TEST_F(Frame, WithoutALegendFillsTheBufferWithTheView) {
    const Camera camera(100.0, 70.0, 10.0, 30.0);
    const int height = static_cast<int>(1920.0 / camera.aspect);
    Picture(camera, 1920, height);
    EXPECT_EQ(Viewport(), (std::array<GLint, 4>{0, 0, 1920, height}));
}

TEST_F(Frame, CentresTheViewInAHigherPicture) {
    Picture(PlainCamera(2.0), 400, 301);
    EXPECT_EQ(Viewport(), (std::array<GLint, 4>{0, 50, 400, 200}));
    Picture(PlainCamera(1.0), 400, 301);
    EXPECT_EQ(Viewport(), (std::array<GLint, 4>{0, -49, 400, 400})) << "truncated toward zero";
}

TEST_F(Frame, WithALegendDrawsTheViewToTheRightOfIt) {
    // Aspect 2 and height 960: 800 rows from row 80 on.
    AppendRectangle(model_, uploads_, {1.0f, 0.0f, 0.0f});
    model_.stack.layers[0]->label = "";
    model_.stack.layerCount = 1;
    model_.settings.showLegend = true;
    const Pixels picture = Picture(PlainCamera(2.0), 1920, 960);
    const PixelBox view =
        picture.BoxOf([](const Pixel& pixel) { return pixel.red > 200 && pixel.red < 255; });
    EXPECT_EQ(view, (PixelBox{320, 80, 1920, 880}));
    EXPECT_EQ(picture.BoxOf(Pixel{255, 0, 0, 255}), (PixelBox{0, 0, 72, 36})) << "the swatch";
    EXPECT_EQ(Viewport(), (std::array<GLint, 4>{0, 0, 320, 960})) << "left at the strip";
}

TEST_F(Frame, UploadsTransformLightAndTheLastLayersColour) {
    const Camera camera(100.0, 70.0, 10.0, 30.0);
    AppendRectangle(model_, uploads_, {0.1f, 0.2f, 0.3f});
    AppendRectangle(model_, uploads_, {0.4f, 0.5f, 0.6f});
    model_.stack.layers[1]->alpha = 0.7f;
    model_.settings.windowWidth = 0.7f;
    Picture(camera, 200, 100);
    const GLuint program = tools_.surfaceShader.Program();
    const auto uniform = [&](const char* name) {
        std::array<float, 16> values{};
        glGetUniformfv(program, glGetUniformLocation(program, name), values.data());
        return values;
    };
    EXPECT_EQ(uniform("transform"), camera.transform);
    EXPECT_EQ(uniform("lightColor")[0], 1.0f);
    EXPECT_EQ(uniform("lightColor")[1], 1.0f);
    EXPECT_EQ(uniform("lightColor")[2], 1.0f);
    EXPECT_EQ(uniform("lightPos")[0], 0.7f * 0.5f);
    EXPECT_EQ(uniform("lightPos")[1], -0.7f * 4.0f);
    EXPECT_EQ(uniform("lightPos")[2], 0.7f * 0.9f * 4.0f);
    EXPECT_EQ(uniform("color")[0], 0.4f);
    EXPECT_EQ(uniform("color")[1], 0.5f);
    EXPECT_EQ(uniform("color")[2], 0.6f);
    EXPECT_EQ(uniform("alpha")[0], 0.7f);
}

TEST_F(Frame, DrawsOnlyTheIndicesOfALayer) {
    const std::array<MeshVertex, 4> corners{{{{-1.0f, -1.0f, 0.0f}, {0.0f, 0.0f, 1.0f}},
                                             {{1.0f, -1.0f, 0.0f}, {0.0f, 0.0f, 1.0f}},
                                             {{-1.0f, 1.0f, 0.0f}, {0.0f, 0.0f, 1.0f}},
                                             {{1.0f, 1.0f, 0.0f}, {0.0f, 0.0f, 1.0f}}}};
    AppendDrawnLayer(model_, uploads_, {1.0f, 0.0f, 0.0f}, corners,
                     std::array<std::uint32_t, 3>{0, 1, 2});
    const Pixels picture = Picture(PlainCamera(1.0), 300, 300);
    EXPECT_TRUE(IsReddish(picture.At(20, 20)));
    EXPECT_EQ(picture.At(280, 280), white) << "the other triangle";
}

TEST_F(Frame, SkipsEmptySlots) {
    AppendLayer(model_.stack, nullptr);
    AppendRectangle(model_, uploads_, {1.0f, 0.0f, 0.0f});
    AppendLayer(model_.stack, nullptr);
    model_.stack.layerCount = 1;
    model_.settings.showLegend = true;
    const Pixels picture = Picture(PlainCamera(2.0), 720, 200);
    EXPECT_TRUE(IsReddish(picture.At(500, 150)));
}

TEST_F(Frame, HidesWhatLiesBehindAndBlendsInStackOrder) {
    // A near translucent layer first: what comes later lies behind it and is not seen through it.
    AppendRectangle(model_, uploads_, {0.0f, 0.0f, 1.0f}, -0.5f);
    model_.stack.layers[0]->alpha = 0.5f;
    AppendRectangle(model_, uploads_, {1.0f, 0.0f, 0.0f}, 0.5f);
    const Pixel hidden = Picture(PlainCamera(1.0), 300, 300).At(20, 280);
    EXPECT_NEAR(hidden.red, 127, 2) << "half of the white background";
    EXPECT_NEAR(hidden.green, 127, 2);
    EXPECT_GT(hidden.blue, 230);
    // The other way round it blends with the one behind it.
    std::swap(model_.stack.layers[0], model_.stack.layers[1]);
    const Pixel through = Picture(PlainCamera(1.0), 300, 300).At(20, 280);
    EXPECT_LT(through.green, 20);
    EXPECT_NEAR(through.red, 120, 12);
    EXPECT_NEAR(through.blue, 120, 12);
}

TEST_F(Frame, DrawsTenMarkersBelowFifteenDegreesAndAllFromThereOn) {
    AddMarkers(60);
    EXPECT_EQ(CountMarkers(14.9f), 10);
    EXPECT_EQ(CountMarkers(15.0f), 60);
    EXPECT_EQ(CountMarkers(0.0f), 10);
}

TEST_F(Frame, DrawsNoMoreMarkersThanThereAre) {
    AddMarkers(0);
    EXPECT_EQ(CountMarkers(10.0f), 0);
    EXPECT_EQ(CountMarkers(30.0f), 0);
}

TEST_F(Frame, DrawsMarkersOnlyWhereTheyAreAskedFor) {
    AddMarkers(60);
    model_.settings.windowWidth = 100.0f;
    model_.settings.showHeights = false;
    const Pixels picture = Picture(PlainCamera(1.0), 1000, 1000);
    EXPECT_EQ(picture.Count(white) + picture.Count(black), 1000 * 1000);
    EXPECT_LE(picture.BoxOf(black).top, 500) << "nothing above the width label";
}

TEST_F(Frame, WithoutUsableShadersStillHasItsLabelsAndLegend) {
    const ShaderProgram broken("no such.shader");
    AppendRectangle(model_, uploads_, {1.0f, 0.0f, 0.0f});
    AddMarkers(10);
    model_.stack.layerCount = 1;
    model_.settings.showLegend = true;
    model_.settings.showHeights = true;
    const Canvas canvas(1120, 800);
    RenderFrame(model_, uploads_, PlainCamera(1.0), {broken, broken, tools_.textFont}, 1120, 800);
    const Pixels picture = canvas.Read();
    EXPECT_EQ(picture.BoxOf(Pixel{255, 0, 0, 255}), (PixelBox{0, 0, 72, 36}));
    EXPECT_EQ(picture.Count(Pixel{255, 0, 0, 255}) + picture.Count(white) + picture.Count(black),
              1120 * 800)
        << "no layer, no marker";
    EXPECT_GT(picture.Count(black), 500) << "labels";
    TakeGlErrors();
}

TEST_F(Frame, LeavesNoProgramNoVertexArrayAndItsFramebuffer) {
    AppendRectangle(model_, uploads_, {1.0f, 0.0f, 0.0f});
    AddMarkers(20);
    model_.settings.showHeights = true;
    TakeGlErrors();
    const Canvas canvas(400, 200);
    GLint before = 0;
    glGetIntegerv(GL_FRAMEBUFFER_BINDING, &before);
    RenderFrame(model_, uploads_, PlainCamera(2.0), tools_.Tools(), 400, 200);
    EXPECT_EQ(TakeGlErrors(), static_cast<GLenum>(GL_NO_ERROR));
    GLint after = 0;
    glGetIntegerv(GL_FRAMEBUFFER_BINDING, &after);
    EXPECT_EQ(after, before);
    for (const GLenum binding :
         {GL_CURRENT_PROGRAM, GL_VERTEX_ARRAY_BINDING, GL_ELEMENT_ARRAY_BUFFER_BINDING}) {
        GLint bound = -1;
        glGetIntegerv(binding, &bound);
        EXPECT_EQ(bound, 0);
    }
}

TEST_F(Frame, MakesNothingNewAfterTheFirst) {
    AppendRectangle(model_, uploads_, {1.0f, 0.0f, 0.0f});
    AddMarkers(20);
    model_.stack.layerCount = 1;
    model_.settings.showHeights = true;
    model_.settings.showLegend = true;
    const int none = CountGlObjects();
    const Pixels first = Picture(PlainCamera(2.0), 800, 300);
    const int lists = CountGlObjects();
    EXPECT_EQ(lists - none, 3 * 256) << "three sizes of text";
    for (int i = 0; i < 20; ++i) {
        EXPECT_EQ(Picture(PlainCamera(2.0), 800, 300), first);
    }
    EXPECT_EQ(CountGlObjects(), lists);
}

TEST_F(Frame, TakesACameraWithoutAnAspect) {
    AppendRectangle(model_, uploads_, {1.0f, 0.0f, 0.0f});
    for (const double aspect : {0.0, std::nan(""), -1.0, 1e-300, 1e300}) {
        Picture(PlainCamera(aspect), 100, 50);
    }
    TakeGlErrors();
    EXPECT_TRUE(IsReddish(Picture(PlainCamera(2.0), 100, 50).At(3, 47))) << "all is well again";
}

}  // namespace
}  // namespace zelmo
