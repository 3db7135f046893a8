#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "desktop/picture_maker.h"
#include "model/process_model.h"
#include "render/gl/gl_context.h"
#include "tests/support/recording_console.h"

namespace zelmo {
namespace {

class GlPictureMakerTest : public testing::Test {
protected:
    void SetUp() override { ASSERT_NE(context_, nullptr) << reason_; }

    std::string reason_;
    std::unique_ptr<GlContext> context_ = CreateOffscreenGlContext(reason_);
    RecordingConsole console_;
};

TEST_F(GlPictureMakerTest, SaysNothingOfGoodShaders) {
    const auto maker = CreateGlPictureMaker("surface.shader", "point.shader", &console_);
    EXPECT_TRUE(console_.lines.empty());
}

TEST_F(GlPictureMakerTest, LogsWhyShadersFailAndStillTakesPictures) {
    const auto maker = CreateGlPictureMaker("no surface.shader", "no point.shader", &console_);
    ASSERT_GE(console_.lines.size(), 4u);
    EXPECT_EQ(console_.lines.front(), "Failed to open shader file: no surface.shader");
    EXPECT_TRUE(console_.lines.back().starts_with("Failed to link program with error "));
    ProcessModel model;
    model.settings.windowWidth = model.settings.windowHeight = 10.0f;
    model.settings.cameraAngle = 30.0f;
    EXPECT_EQ(maker->TakePicture(model, {}, 1).width, 1920);
}

}  // namespace
}  // namespace zelmo
