#include "render/slide/scale_bars.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>

#include "model/process.h"
#include "render/camera.h"
#include "render/picture_camera.h"
#include "render/picture_choice.h"

namespace zelmo {
namespace {

constexpr Vector3 box{10.0f, 8.0f, 3.0f};
constexpr PixelRect view{100, 50, 1600, 1000};

ProcessSettings Settings() {
    ProcessSettings settings;
    settings.windowWidth = box[0];
    settings.windowHeight = box[1];
    settings.cameraAngle = 40.0f;
    return settings;
}

/// As high as the camera's aspect asks for.
Projector From(const PictureCamera& camera) {
    PixelRect fitting = view;
    fitting.height = static_cast<std::int32_t>(view.width / camera.aspect);
    return {camera.transform, fitting};
}

Projector From(double azimuth, double elevation, bool isParallel = true) {
    return From(CameraFrom({azimuth, elevation, isParallel}, Settings(), box[2]));
}

Projector FromTheFront() {
    const Camera camera(10.0, 8.0, 3.0, 40.0);
    return From(FrontalCamera(camera, Settings()));
}

double LengthOf(const ScaleBar& bar) {
    return std::hypot(bar.to.x - bar.from.x, bar.to.y - bar.from.y);
}

TEST(OutlineEdge, OfTheUsualViewIsBelowForXToTheRightForYAndToTheLeftForTheHeight) {
    const Projector projector = FromTheFront();
    const auto x = FindOutlineEdge(projector, box, 0);
    ASSERT_TRUE(x);
    EXPECT_EQ(x->from, (Vector3{0.0f, 0.0f, 0.0f}));
    EXPECT_EQ(x->to, (Vector3{10.0f, 0.0f, 0.0f}));
    EXPECT_NEAR(x->outward.y, -1.0, 1e-6);
    const auto y = FindOutlineEdge(projector, box, 1);
    ASSERT_TRUE(y);
    EXPECT_EQ(y->from[0], 10.0f);
    EXPECT_GT(y->outward.x, 0.5);
    const auto height = FindOutlineEdge(projector, box, 2);
    ASSERT_TRUE(height);
    EXPECT_EQ(height->from, (Vector3{0.0f, 0.0f, 0.0f}));
    EXPECT_LT(height->outward.x, -0.5);
}

TEST(OutlineEdge, HasTheWholeBoxOnItsOtherSide) {
    for (double azimuth = 0.0; azimuth < 360.0; azimuth += 22.5) {
        for (const double elevation : {-30.0, 5.0, 35.0, 80.0}) {
            for (const bool isParallel : {false, true}) {
                const Projector projector = From(azimuth, elevation, isParallel);
                for (std::size_t axis = 0; axis < 3; ++axis) {
                    const auto edge = FindOutlineEdge(projector, box, axis);
                    if (!edge) {
                        continue;
                    }
                    const PixelPoint start = projector.At(edge->from);
                    for (unsigned i = 0; i < 8; ++i) {
                        const PixelPoint p = projector.At({(i & 1) != 0 ? box[0] : 0.0f,
                                                           (i & 2) != 0 ? box[1] : 0.0f,
                                                           (i & 4) != 0 ? box[2] : 0.0f});
                        EXPECT_LE(
                            (p.x - start.x) * edge->outward.x + (p.y - start.y) * edge->outward.y,
                            0.06)
                            << azimuth << ' ' << elevation << ' ' << axis;
                    }
                }
            }
        }
    }
}

TEST(ScaleBars, AreAsLongAsTheySayInAParallelView) {
    // From above, 10 um take 1600 pixels less the border.
    const double pixelsPerMicron = 1600.0 / 1.1 / 10.0;
    const std::vector<ScaleBar> above = FindScaleBars(From(0.0, 90.0), box, 1.0);
    ASSERT_EQ(above.size(), 2u);  // heights point at the eye
    EXPECT_EQ(above[0].text, "x: 2 um");
    EXPECT_NEAR(LengthOf(above[0]), 2.0 * pixelsPerMicron, 0.01);
    EXPECT_EQ(above[1].text, "y: 2 um");
    // The view is a whole number of pixels high.
    EXPECT_NEAR(LengthOf(above[1]), 2.0 * pixelsPerMicron, 0.3);
    const std::vector<ScaleBar> front = FindScaleBars(From(0.0, 0.0), box, 1.0);
    ASSERT_EQ(front.size(), 2u);  // y points at the eye
    EXPECT_EQ(front[1].text, "z: 500 nm");
    EXPECT_NEAR(LengthOf(front[1]), 0.5 * pixelsPerMicron, 0.3);
}

TEST(ScaleBars, AreAsLongAsTheSameLengthOfTheirEdge) {
    const Projector projector = FromTheFront();
    const std::vector<ScaleBar> bars = FindScaleBars(projector, box, 1.0);
    ASSERT_EQ(bars.size(), 3u);
    const PixelPoint start = projector.At({0.0f, 0.0f, 0.0f});
    const PixelPoint end = projector.At({2.0f, 0.0f, 0.0f});
    EXPECT_EQ(bars[0].text, "x: 2 um");
    EXPECT_NEAR(LengthOf(bars[0]), end.x - start.x, 0.01);
}

TEST(ScaleBars, HaveRoundLengths) {
    std::map<float, std::string> texts{
        {1.0f, "x: 200 nm"}, {1.7f, "x: 500 nm"}, {4.0f, "x: 1 um"}, {300.0f, "x: 50 um"}};
    for (const auto& [width, text] : texts) {
        ProcessSettings settings;
        settings.windowWidth = width;
        settings.windowHeight = width;
        const Projector projector = From(CameraFrom({0.0, 90.0, true}, settings, width));
        EXPECT_EQ(FindScaleBars(projector, {width, width, width}, 1.0).at(0).text, text);
    }
}

TEST(ScaleBars, OfALowStackIsAsHighAsItCan) {
    ProcessSettings settings = Settings();
    const Vector3 low{10.0f, 8.0f, 0.25f};
    const Projector projector = From(CameraFrom({0.0, 20.0, true}, settings, low[2]));
    const std::vector<ScaleBar> bars = FindScaleBars(projector, low, 1.0);
    ASSERT_EQ(bars.size(), 3u);
    EXPECT_EQ(bars[2].text, "z: 200 nm");
}

}  // namespace
}  // namespace zelmo
