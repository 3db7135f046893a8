#include "render/picture_camera.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "model/process.h"
#include "render/camera.h"
#include "render/picture_choice.h"

namespace zelmo {
namespace {

constexpr float width = 100.0f;
constexpr float depth = 60.0f;
constexpr float top = 12.0f;

ProcessSettings ViewedSettings() {
    ProcessSettings settings;
    settings.windowWidth = width;
    settings.windowHeight = depth;
    settings.cameraAngle = 30.0f;
    return settings;
}

struct ClipPoint {
    double x, y, z;
};

ClipPoint At(const PictureCamera& camera, double x, double y, double z) {
    const Matrix4& m = camera.transform;
    const auto row = [&](std::size_t i) {
        return m[i] * x + m[4 + i] * y + m[8 + i] * z + m[12 + i];
    };
    return {row(0) / row(3), row(1) / row(3), row(2) / row(3)};
}

std::vector<ClipPoint> Corners(const PictureCamera& camera) {
    std::vector<ClipPoint> corners;
    for (unsigned i = 0; i < 8; ++i) {
        corners.push_back(At(camera, (i & 1) != 0 ? width : 0.0, (i & 2) != 0 ? depth : 0.0,
                             (i & 4) != 0 ? top : 0.0));
    }
    return corners;
}

TEST(PictureCamera, TheUsualOneIsThatOfTheProcessFile) {
    const Camera camera(100.0, 60.0, 12.0, 30.0);
    const PictureCamera frontal = FrontalCamera(camera, ViewedSettings());
    EXPECT_EQ(frontal.transform, camera.transform);
    EXPECT_EQ(frontal.aspect, camera.aspect);
    EXPECT_FALSE(frontal.seen.Any());
    EXPECT_EQ(frontal.elevation, 30.0);
}

TEST(PictureCamera, ShowsAllOfTheStackFromAnySide) {
    for (double azimuth = -360.0; azimuth <= 360.0; azimuth += 45.0) {
        for (double elevation = -90.0; elevation <= 90.0; elevation += 15.0) {
            for (const bool isParallel : {false, true}) {
                SCOPED_TRACE(testing::Message() << azimuth << ", " << elevation << isParallel);
                const PictureCamera camera =
                    CameraFrom({azimuth, elevation, isParallel}, ViewedSettings(), top);
                double widest = 0.0;
                for (const ClipPoint& corner : Corners(camera)) {
                    EXPECT_LE(std::abs(corner.x), 1.0 / 1.0999);
                    EXPECT_LE(std::abs(corner.y), 1.0001);
                    EXPECT_LT(std::abs(corner.z), 1.0);
                    widest = std::max({widest, std::abs(corner.x), std::abs(corner.y)});
                }
                EXPECT_GT(widest, 0.9);  // and no smaller than it must be
                EXPECT_GE(camera.aspect, 0.7999);
                EXPECT_LE(camera.aspect, 5.0001);
            }
        }
    }
}

TEST(PictureCamera, NearerThingsHaveLessDepth) {
    for (const bool isParallel : {false, true}) {
        const PictureCamera camera = CameraFrom({90.0, 20.0, isParallel}, ViewedSettings(), top);
        EXPECT_LT(At(camera, width, 30.0, 0.0).z, At(camera, 0.0, 30.0, 0.0).z);
    }
}

TEST(PictureCamera, ItsAzimuthGoesAroundFromTheFrontToTheRight) {
    // What is nearer is larger, and what is to the right is to the right.
    const PictureCamera right = CameraFrom({90.0, 20.0, false}, ViewedSettings(), top);
    EXPECT_LT(At(right, width, 0.0, 0.0).x, At(right, width, depth, 0.0).x);
    const PictureCamera back = CameraFrom({180.0, 20.0, false}, ViewedSettings(), top);
    EXPECT_GT(At(back, 0.0, depth, 0.0).x, At(back, width, depth, 0.0).x);
    const PictureCamera left = CameraFrom({270.0, 20.0, false}, ViewedSettings(), top);
    EXPECT_GT(At(left, 0.0, 0.0, 0.0).x, At(left, 0.0, depth, 0.0).x);
}

TEST(PictureCamera, KnowsTheSidesThatAreSeen) {
    const auto seen = [](double azimuth, double elevation, bool isParallel) {
        return CameraFrom({azimuth, elevation, isParallel}, ViewedSettings(), top).seen;
    };
    for (const bool isParallel : {false, true}) {
        EXPECT_EQ(seen(0.0, 30.0, isParallel), (WindowSides{false, false, false}));
        EXPECT_EQ(seen(45.0, 30.0, isParallel), (WindowSides{false, true, false}));
        EXPECT_EQ(seen(135.0, 30.0, isParallel), (WindowSides{false, true, true}));
        EXPECT_EQ(seen(180.0, 30.0, isParallel), (WindowSides{false, false, true}));
        EXPECT_EQ(seen(-135.0, 30.0, isParallel), (WindowSides{true, false, true}));
        EXPECT_EQ(seen(-45.0, 30.0, isParallel), (WindowSides{true, false, false}));
        EXPECT_EQ(seen(77.0, 90.0, isParallel), (WindowSides{false, false, false}));
    }
}

TEST(PictureCamera, WithoutPerspectiveEqualLengthsAreEqual) {
    const PictureCamera camera = CameraFrom({30.0, 25.0, true}, ViewedSettings(), top);
    const auto span = [&](double y, double z) {
        return At(camera, width, y, z).x - At(camera, 0.0, y, z).x;
    };
    EXPECT_NEAR(span(0.0, 0.0), span(depth, top), 1e-6);
    // One scale across and upwards
    const PictureCamera above = CameraFrom({0.0, 90.0, true}, ViewedSettings(), top);
    const double across = (At(above, width, 0.0, 0.0).x - At(above, 0.0, 0.0, 0.0).x) / 100.0;
    const double up = (At(above, 0.0, depth, 0.0).y - At(above, 0.0, 0.0, 0.0).y) / 60.0;
    EXPECT_NEAR(across * above.aspect, up, 1e-6);
    EXPECT_NEAR(across * 100.0, 2.0 / 1.1, 1e-6);
}

}  // namespace
}  // namespace zelmo
