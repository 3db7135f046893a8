#include "render/camera.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <limits>

namespace zelmo {
namespace {

double FieldOfViewY(const Camera& camera) {
    return 2.0 * std::atan(1.0 / static_cast<double>(camera.projection[5]));
}

double NearDistance(const Camera& camera) {
    return camera.projection[14] / (camera.projection[10] - 1.0);
}

double FarDistance(const Camera& camera) {
    return camera.projection[14] / (camera.projection[10] + 1.0);
}

TEST(Camera, LooksDownAtASquareWindow) {
    const Camera camera(100.0, 100.0, 10.0, 30.0);
    EXPECT_EQ(camera.eye[0], 50.0f);
    EXPECT_EQ(camera.eye[1], -400.0f);
    EXPECT_NEAR(camera.eye[2], 240.94, 0.005);
    EXPECT_EQ(camera.centre[0], 50.0f);
    EXPECT_NEAR(camera.centre[1], 54.54, 0.005);
    EXPECT_EQ(camera.centre[2], 0.0f);
    EXPECT_EQ(camera.up[0], 0.0f);
    EXPECT_NEAR(camera.up[1], 240.94, 0.005);
    EXPECT_NEAR(camera.up[2], 454.54, 0.005);
    EXPECT_NEAR(NearDistance(camera), 438.79, 0.005);
    EXPECT_NEAR(FarDistance(camera), 605.83, 0.005);
    EXPECT_NEAR(FieldOfViewY(camera), 0.1095, 0.00005);
    EXPECT_NEAR(FieldOfViewY(camera) * camera.aspect, 0.2372, 0.00005);
    EXPECT_NEAR(camera.aspect, 2.167, 0.0005);
    EXPECT_FALSE(camera.fixedProjection);
    EXPECT_EQ(PictureHeight(camera, false, 0), 885);
}

TEST(Camera, AtAngleZeroTheEyeIsAtTheTopAndTheViewIsFiveToOne) {
    const Camera camera(100.0, 100.0, 10.0, 0.0);
    EXPECT_EQ(camera.eye[2], 10.0f);
    EXPECT_EQ(camera.aspect, 5.0);
    EXPECT_EQ(PictureHeight(camera, false, 0), 384);
}

TEST(Camera, AFlatSceneIsNoWiderThanFiveToOne) {
    const Camera camera(100.0, 20.0, 2.0, 30.0);
    EXPECT_EQ(camera.aspect, 5.0);
    EXPECT_EQ(PictureHeight(camera, false, 0), 384);
}

TEST(Camera, ASteeperViewGivesAHigherPicture) {
    const Camera camera(100.0, 100.0, 2.0, 40.0);
    EXPECT_NEAR(camera.aspect, 1.912, 0.0005);
    EXPECT_EQ(PictureHeight(camera, false, 0), 1004);
}

TEST(Camera, UpNeverLeansSideways) {
    for (int angle = 0; angle <= 89; ++angle) {
        for (const double top : {1.1754944e-38, 0.5, 40.0, 900.0}) {
            EXPECT_EQ(Camera(100.0, 60.0, top, angle).up[0], 0.0f) << angle << " " << top;
        }
    }
}

TEST(Camera, ATallerStackRaisesTheEyeAndChangesTheView) {
    const Camera low(100.0, 100.0, 10.0, 30.0);
    const Camera high(100.0, 100.0, 15.0, 30.0);
    EXPECT_NEAR(high.eye[2] - low.eye[2], 5.0, 0.0001);
    EXPECT_NE(high.aspect, low.aspect);
    EXPECT_NE(PictureHeight(high, false, 0), PictureHeight(low, false, 0));
}

TEST(Camera, ItsBitsAreTheSameInEveryBuild) {
    const Camera camera(86.0, 86.0, static_cast<double>(4.3f), 38.0);
    const Matrix4 transform = {0x1.27f9ecp+3f,
                               0.0f,
                               0.0f,
                               0.0f,
                               0.0f,
                               0x1.484d6p+3f,
                               0x1.635d64p+2f,
                               0x1.a240c4p-1f,
                               0.0f,
                               0x1.d0fab4p+3f,
                               -0x1.f5d0eep+1f,
                               -0x1.274f8ep-1f,
                               -0x1.8db7d6p+8f,
                               -0x1.b682ap+8f,
                               -0x1.f9f42p+7f,
                               0x1.b682ap+8f};
    EXPECT_EQ(camera.aspect, 0x1.ec51f6d7828aep+0);
    for (std::size_t i = 0; i < transform.size(); ++i) {
        EXPECT_EQ(camera.transform[i], transform[i]) << i;
    }
}

TEST(Camera, TransformIsTheProjectionOfTheView) {
    const Camera camera(80.0, 50.0, 3.0, 25.0);
    for (std::size_t column = 0; column < 4; ++column) {
        for (std::size_t row = 0; row < 4; ++row) {
            float sum = 0.0f;
            for (std::size_t k = 0; k < 4; ++k) {
                sum += camera.projection[4 * k + row] * camera.view[4 * column + k];
            }
            EXPECT_EQ(camera.transform[4 * column + row], sum);
        }
    }
}

TEST(Camera, TheFrontEdgesMiddleProjectsToTheBottomOfThePicture) {
    const Camera camera(100.0, 100.0, 10.0, 30.0);
    const auto clipY = [&](float x, float y, float z) {
        const Matrix4& m = camera.transform;
        return (m[1] * x + m[5] * y + m[9] * z + m[13]) / (m[3] * x + m[7] * y + m[11] * z + m[15]);
    };
    EXPECT_NEAR(clipY(50.0f, 0.0f, 0.0f), -1.0, 0.001);
    EXPECT_NEAR(clipY(50.0f, 100.0f, 10.0f), 1.0, 0.001);
}

TEST(LookAt, PutsTheEyeAtTheOriginAndTheCentreOnTheNegativeZAxis) {
    const Matrix4 view = LookAt({1.0f, 2.0f, 3.0f}, {1.0f, 2.0f, -4.0f}, {0.0f, 1.0f, 0.0f});
    const Matrix4 expected = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, -1, -2, -3, 1};
    EXPECT_EQ(view, expected);
}

TEST(LookAt, AnEyeAtItsCentreSeesNothing) {
    const Matrix4 view = LookAt({1.0f, 2.0f, 3.0f}, {1.0f, 2.0f, 3.0f}, {0.0f, 1.0f, 0.0f});
    const Matrix4 expected = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1};
    EXPECT_EQ(view, expected);
}

TEST(LookAt, AnUpAlongTheSightGivesNoSidewaysDirection) {
    const Matrix4 view = LookAt({0.0f, 0.0f, 5.0f}, {0.0f, 0.0f, 0.0f}, {0.0f, 0.0f, 1.0f});
    const Matrix4 expected = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, -5, 1};
    EXPECT_EQ(view, expected);
}

TEST(PictureHeight, ALegendGetsThirtySixPixelsALayer) {
    const Camera flat(100.0, 100.0, 10.0, 0.0);
    EXPECT_EQ(PictureHeight(flat, true, 20), 720);
    EXPECT_EQ(PictureHeight(flat, false, 20), 384);
}

TEST(PictureHeight, AShortLegendLeavesTheHeightOfTheView) {
    const Camera flat(100.0, 100.0, 10.0, 0.0);
    EXPECT_EQ(PictureHeight(flat, true, 10), 384);
    EXPECT_EQ(PictureHeight(flat, true, 11), 396);
    EXPECT_EQ(PictureHeight(flat, true, 0), 384);
}

TEST(PictureHeight, IsCutNotRounded) {
    Camera camera(100.0, 100.0, 10.0, 30.0);
    camera.aspect = 1920.0 / 700.999;
    EXPECT_EQ(PictureHeight(camera, false, 0), 700);
}

TEST(PictureHeight, AnAspectThatIsNoNumberGivesNoHeight) {
    Camera camera(100.0, 100.0, 10.0, 30.0);
    for (const double aspect : {0.0, std::numeric_limits<double>::quiet_NaN(), 1e-300}) {
        camera.aspect = aspect;
        EXPECT_LE(PictureHeight(camera, false, 0), 0);
        EXPECT_EQ(PictureHeight(camera, true, 2), 72);
    }
    camera.aspect = std::numeric_limits<double>::infinity();
    EXPECT_EQ(PictureHeight(camera, false, 0), 0);
}

}  // namespace
}  // namespace zelmo
