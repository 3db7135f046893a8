// What the project's shaders make of surfaces and markers: colours that stay what they are, steps
// that can be told from flat places, round markers.
#include <GL/glew.h>

#include <algorithm>
#include <cmath>

#include "tests/render/gl_test.h"

namespace zelmo {
namespace {

using Color = std::array<float, 3>;
using Normal = std::array<float, 3>;

constexpr Normal top{0.0f, 0.0f, 1.0f};
constexpr Normal front{0.0f, -1.0f, 0.0f};
constexpr Normal leftSide{-1.0f, 0.0f, 0.01f};
constexpr Normal rightSide{1.0f, 0.0f, 0.01f};
constexpr Normal frontSlope{0.0f, -0.7f, 0.7f};
constexpr Normal backSlope{0.0f, 0.7f, 0.7f};

class Shading : public ::testing::Test {
protected:
    /// The pixel of a surface with this normal, over white.
    Pixel Shade(Color color, Normal normal, float alpha = 1.0f) {
        ProcessModel model;
        model.settings.windowWidth = 100.0f;
        StackUploads uploads;
        AppendRectangle(model, uploads, color, 0.0f, normal).alpha = alpha;
        const Canvas canvas(64, 64);
        RenderFrame(model, uploads, PlainCamera(1.0), tools_.Tools(), 64, 64);
        return canvas.Read().At(60, 60);
    }

    /// The brightness of a grey surface with this normal.
    int Grey(float grey, Normal normal) { return Shade({grey, grey, grey}, normal).green; }

    TestTools tools_;
};

TEST_F(Shading, KeepsFlatTopsCloseToTheirColour) {
    for (const Color& color : {Color{1.0f, 0.39f, 0.28f}, Color{0.27f, 0.51f, 0.71f},
                               Color{1.0f, 0.84f, 0.0f}, Color{0.75f, 0.75f, 0.75f}}) {
        const Pixel pixel = Shade(color, top);
        EXPECT_NEAR(pixel.red, 255.0f * color[0], 20.0f);
        EXPECT_NEAR(pixel.green, 255.0f * color[1], 20.0f);
        EXPECT_NEAR(pixel.blue, 255.0f * color[2], 20.0f);
    }
}

TEST_F(Shading, DoesNotDependOnTheLengthOfANormal) {
    const Color color{0.8f, 0.6f, 0.4f};
    for (const Normal& normal : {top, front, leftSide, frontSlope}) {
        const Pixel unit = Shade(color, normal);
        for (const float length : {1e-30f, 1e-12f, 8e-6f, 0.02f, 800.0f, 1e12f, 1e30f}) {
            const Normal scaled{normal[0] * length, normal[1] * length, normal[2] * length};
            EXPECT_EQ(Shade(color, scaled), unit) << length;
        }
    }
}

TEST_F(Shading, TakesANormalWithoutALengthForAFlatPlace) {
    const Color color{0.8f, 0.6f, 0.4f};
    EXPECT_EQ(Shade(color, {0.0f, 0.0f, 0.0f}), Shade(color, top));
}

TEST_F(Shading, LightsLowerSurfacesLikeUpperOnesButWeaker) {
    for (const Normal& normal : {top, frontSlope, backSlope, leftSide, rightSide}) {
        const Normal inverted{-normal[0], -normal[1], -normal[2]};
        const int upper = Grey(0.7f, normal);
        const int lower = Grey(0.7f, inverted);
        EXPECT_LT(lower, upper);
        EXPECT_GT(lower, upper * 3 / 4);
    }
}

TEST_F(Shading, HasNoBlackAndNoBurntOutPlaces) {
    for (int tilt = 0; tilt <= 90; tilt += 10) {
        for (int turn = 0; turn < 360; turn += 30) {
            const double slope = tilt * 3.14159265358979 / 180.0;
            const double heading = turn * 3.14159265358979 / 180.0;
            const Normal normal{static_cast<float>(std::sin(slope) * std::cos(heading)),
                                static_cast<float>(std::sin(slope) * std::sin(heading)),
                                static_cast<float>(std::cos(slope) + 0.001)};
            const int middle = Grey(0.5f, normal);
            EXPECT_GT(middle, 127 * 45 / 100) << tilt << ' ' << turn;
            EXPECT_LT(middle, 127 * 115 / 100) << tilt << ' ' << turn;
            EXPECT_GT(Grey(0.0f, normal), 10) << "black itself, " << tilt << ' ' << turn;
        }
    }
}

TEST_F(Shading, TellsStepsFromFlatPlacesInBrightAndDarkColours) {
    for (const float grey : {0.0f, 0.1f, 0.25f, 0.5f, 0.75f, 1.0f}) {
        const int flat = Grey(grey, top);
        const int wall = Grey(grey, front);
        const int left = Grey(grey, leftSide);
        const int right = Grey(grey, rightSide);
        const int least = grey < 0.2f ? 5 : 10;
        EXPECT_GT(flat - wall, least) << grey;
        EXPECT_GT(wall - left, least) << grey;
        EXPECT_GT(left - right, least / 2) << grey;
        EXPECT_GT(flat - Grey(grey, backSlope), least) << grey;
    }
}

TEST_F(Shading, SetsWhiteOffFromTheBackground) {
    EXPECT_LT(Grey(1.0f, top), 250);
    EXPECT_GT(Grey(1.0f, top), 230);
}

TEST_F(Shading, PassesTheOpacityOn) {
    const Pixel opaque = Shade({0.2f, 0.4f, 0.8f}, top);
    const Pixel half = Shade({0.2f, 0.4f, 0.8f}, top, 0.5f);
    EXPECT_NEAR(half.red, (opaque.red + 255) / 2.0, 1.0);
    EXPECT_NEAR(half.green, (opaque.green + 255) / 2.0, 1.0);
    EXPECT_NEAR(half.blue, (opaque.blue + 255) / 2.0, 1.0);
    EXPECT_EQ(Shade({0.2f, 0.4f, 0.8f}, top, 0.0f).red, 255);
}

void SetMarker(StackUploads& uploads, const MarkerVertex& marker) {
    uploads.markers.vertices = {marker};
    uploads.markerVertices.Upload(std::as_bytes(std::span(uploads.markers.vertices)));
}

/// A picture of markers at these places of clip space over a layer, without labels in the way.
class Markers : public ::testing::Test {
protected:
    Pixels Draw(const Camera& camera, std::array<float, 3> position, const Color& color) {
        TestTools tools;
        ProcessModel model;
        StackUploads uploads;
        model.settings.windowWidth = 100.0f;
        model.settings.cameraAngle = 30.0f;
        model.settings.showHeights = true;
        AppendRectangle(model, uploads, color, 0.5f);
        MarkerVertex marker;
        std::copy(position.begin(), position.end(), marker.position);
        SetMarker(uploads, marker);
        const Canvas canvas(400, 400);
        RenderFrame(model, uploads, camera, tools.Tools(), 400, 400);
        return canvas.Read();
    }
};

TEST_F(Markers, AreRoundWithADarkRimAndALightMiddle) {
    for (const Color& color : {Color{1.0f, 1.0f, 1.0f}, Color{0.0f, 0.0f, 0.3f}}) {
        const Pixels with = Draw(PlainCamera(1.0), {0.0f, 0.0f, 0.0f}, color);
        const Pixel ground = with.At(350, 350);
        int covered = 0;
        for (int y = 190; y < 209; ++y) {
            for (int x = 190; x < 210; ++x) {
                const double distance = std::hypot(x + 0.5 - 200.0, y + 0.5 - 200.0);
                const Pixel& pixel = with.At(x, y);
                if (distance < 4.0) {
                    EXPECT_GT(pixel.green, 200) << x << ' ' << y;
                } else if (distance > 5.8 && distance < 6.8) {
                    EXPECT_LT(pixel.green, 60) << x << ' ' << y;
                } else if (distance > 8.3) {
                    EXPECT_EQ(pixel, ground) << x << ' ' << y;
                }
                covered += pixel == ground ? 0 : 1;
            }
        }
        EXPECT_GT(covered, 140) << "14 to 18 pixels across";
        EXPECT_LT(covered, 260);
    }
}

TEST_F(Markers, HaveASmoothEdge) {
    const Pixels picture = Draw(PlainCamera(1.0), {0.0f, 0.0f, 0.0f}, {1.0f, 1.0f, 1.0f});
    int between = 0;
    for (int x = 206; x < 210; ++x) {
        for (int y = 195; y < 205; ++y) {
            const int value = picture.At(x, y).green;
            between += value > 80 && value < 220 ? 1 : 0;
        }
    }
    EXPECT_GT(between, 4);
}

TEST_F(Markers, AreNotCutOffByTheSurfaceThatTheyLieOn) {
    // A floor at height 0, seen from 30 degrees above: its front part is nearer than the marker.
    TestTools tools;
    ProcessModel model;
    StackUploads uploads;
    model.settings.windowWidth = 100.0f;
    model.settings.cameraAngle = 30.0f;
    model.settings.showHeights = true;
    const std::array<MeshVertex, 4> corners{{{{0.0f, 0.0f, 0.0f}, {0.0f, 0.0f, 1.0f}},
                                             {{100.0f, 0.0f, 0.0f}, {0.0f, 0.0f, 1.0f}},
                                             {{0.0f, 70.0f, 0.0f}, {0.0f, 0.0f, 1.0f}},
                                             {{100.0f, 70.0f, 0.0f}, {0.0f, 0.0f, 1.0f}}}};
    AppendDrawnLayer(model, uploads, {0.0f, 0.0f, 0.4f}, corners,
                     std::array<std::uint32_t, 6>{0, 1, 2, 1, 3, 2});
    MarkerVertex marker;
    marker.position[0] = 50.0f;
    marker.position[1] = 35.0f;
    SetMarker(uploads, marker);

    const Camera camera(100.0, 70.0, 1.0, 30.0);
    const int height = static_cast<int>(1920.0 / camera.aspect);
    const Canvas canvas(1920, height);
    RenderFrame(model, uploads, camera, tools.Tools(), 1920, height);
    const Pixels picture = canvas.Read();
    const PixelBox light = picture.BoxOf(
        [](const Pixel& p) { return p.red > 200 && p.green > 200 && p.blue > 200 && p != white; });
    EXPECT_NEAR(light.right - light.left, light.top - light.bottom, 1) << "all of it shows";
    EXPECT_GE(light.top - light.bottom, 9);
}

TEST_F(Markers, AreHiddenByWhatStandsInFront) {
    const Pixels picture = Draw(PlainCamera(1.0), {0.0f, 0.0f, 0.9f}, {1.0f, 0.0f, 0.0f});
    EXPECT_EQ(picture.At(200, 195), picture.At(350, 350));
}

}  // namespace
}  // namespace zelmo
