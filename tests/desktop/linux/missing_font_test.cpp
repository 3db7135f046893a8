#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "desktop/picture_maker.h"
#include "model/process_model.h"
#include "render/gl/gl_context.h"
#include "tests/support/linux/no_fonts.h"
#include "tests/support/recording_console.h"

namespace zelmo {
namespace {

TEST(MissingFont, IsToldInOneLineAndPicturesGoOn) {
    const NoFonts noFonts;
    std::string reason;
    const std::unique_ptr<GlContext> context = CreateOffscreenGlContext(reason);
    ASSERT_NE(context, nullptr) << reason;
    RecordingConsole console;
    const auto maker = CreateGlPictureMaker("surface.shader", "point.shader", &console);
    EXPECT_TRUE(console.lines.empty());
    ProcessModel model;
    model.settings.windowWidth = model.settings.windowHeight = 10.0f;
    model.settings.cameraAngle = 30.0f;
    for (int number = 1; number <= 3; ++number) {
        EXPECT_EQ(maker->TakePicture(model, {}, number).width, 1920);
    }
    EXPECT_EQ(console.lines,
              std::vector<std::string>{
                  "There is no font for the labels of the pictures: pictures come without text"});
}

}  // namespace
}  // namespace zelmo
