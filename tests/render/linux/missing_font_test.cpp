#include "tests/support/linux/no_fonts.h"

#include <memory>
#include <string>

#include "render/studio.h"
#include "tests/render/gl_test.h"
#include "tests/render/made_stack.h"

// A system that has no font at all.

namespace zelmo {
namespace {

TEST(MissingFont, IsAFontWithoutListsAndItsReason) {
    const NoFonts noFonts;
    TextFont textFont;
    EXPECT_EQ(textFont.Problem(), "") << "nobody has asked for one";
    const int before = CountGlObjects();
    const GlFont font = textFont.GetFont(30, 700);
    EXPECT_EQ(font.listBase, 0u);
    EXPECT_EQ(font.height, 0);
    EXPECT_EQ(font.averageWidth, 0);
    EXPECT_EQ(textFont.Problem(), "There is no font for the labels of the pictures");
    textFont.GetFont(30, 700);
    EXPECT_LE(CountGlObjects(), before + 256) << "asked for once";
}

TEST(MissingFont, LeavesThePictureWithoutTextAndOtherwiseComplete) {
    const auto model = MakeEmptyModel(100.0f, 100.0f, 25);
    model->settings.cameraAngle = 30.0f;
    model->settings.showLegend = true;
    model->settings.showHeights = true;
    AddFilm(*model, 10.0f, {1.0f, 0.0f, 0.0f}).label = "ground";
    SettleStack(model->stack, model->grid);
    const StepImage complete = Studio("surface.shader", "point.shader").TakePicture(*model, {}, 1);

    const NoFonts noFonts;
    Studio studio("surface.shader", "point.shader");
    std::string problem = "not asked";
    const StepImage image = studio.TakePicture(*model, {}, 1, &problem);
    EXPECT_EQ(problem, "");
    EXPECT_EQ(studio.FontProblem(), "There is no font for the labels of the pictures");
    std::size_t texts = 0;
    for (std::size_t i = 0; i < image.pixels.size(); i += 4) {
        const bool isBlack =
            complete.pixels[i] + complete.pixels[i + 1] + complete.pixels[i + 2] == 0;
        const bool isSame = std::equal(&image.pixels[i], &image.pixels[i] + 4, &complete.pixels[i]);
        texts += isSame ? 0 : 1;
        ASSERT_TRUE(isSame || isBlack) << "pixel " << i / 4;
    }
    EXPECT_GT(texts, 1000u);
}

}  // namespace
}  // namespace zelmo
