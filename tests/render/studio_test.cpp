#include "render/studio.h"

#include <GL/glew.h>

#include <cstddef>
#include <string>

#include "tests/render/gl_test.h"
#include "tests/render/made_stack.h"
#include "tests/support/temp_folder.h"

namespace zelmo {
namespace {

/// A film on a substrate, with a legend.
std::unique_ptr<ProcessModel> MakeModel() {
    auto model = MakeEmptyModel(100.0f, 100.0f, 25);
    model->settings.cameraAngle = 30.0f;
    model->settings.showLegend = true;
    AddFilm(*model, 10.0f, {1.0f, 0.0f, 0.0f}).label = "ground";
    AddFilm(*model, 5.0f, {0.0f, 0.0f, 1.0f}).label = "film";
    SettleStack(model->stack, model->grid);
    return model;
}

/// How many pixels have a colour for which the test holds.
template <typename Test>
std::size_t CountPixels(const StepImage& image, Test&& test) {
    std::size_t count = 0;
    for (std::size_t i = 0; i < image.pixels.size(); i += 4) {
        count += test(image.pixels[i + 2], image.pixels[i + 1], image.pixels[i]) ? 1 : 0;
    }
    return count;
}

std::size_t CountBlue(const StepImage& image) {
    return CountPixels(image, [](int red, int, int blue) { return blue > 150 && red < 60; });
}

TEST(Studio, TakesCompletePictures) {
    Studio studio("surface.shader", "point.shader");
    EXPECT_TRUE(studio.FaultyShaders().empty());
    std::string problem = "not asked";
    ProcessStep step;
    step.description = "film";
    const StepImage image = studio.TakePicture(*MakeModel(), step, 7, &problem);
    EXPECT_EQ(problem, "");
    EXPECT_EQ(studio.FontProblem(), "");
    EXPECT_EQ(image.name, L"007 film");
    EXPECT_EQ(image.width, 1920);
    EXPECT_GT(CountBlue(image), 100000u);
    EXPECT_GT(CountPixels(image, [](int r, int g, int b) { return r + g + b == 0; }), 500u);
}

TEST(Studio, TakesPicturesOfOneModelAfterAnother) {
    Studio studio("surface.shader", "point.shader");
    const StepImage first = studio.TakePicture(*MakeModel(), {}, 1);
    const int objects = CountGlObjects();
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(studio.TakePicture(*MakeModel(), {}, 1).pixels, first.pixels);
    }
    EXPECT_EQ(CountGlObjects(), objects) << "a model's objects go with it";
}

TEST(Studio, TellsWhichShadersFailAndWhy) {
    const TempFolder folder;
    const auto faulty = folder.Write("bad.shader", "#shader vertex\nbad\n#shader fragment\nbad\n");
    const Studio studio(faulty, "no such.shader");
    ASSERT_EQ(studio.FaultyShaders().size(), 2u);
    EXPECT_EQ(studio.FaultyShaders()[0].path, faulty);
    EXPECT_EQ(studio.FaultyShaders()[0].reasons.size(), 3u);
    EXPECT_EQ(studio.FaultyShaders()[1].path, "no such.shader");
    EXPECT_EQ(studio.FaultyShaders()[1].reasons.front(),
              L"Failed to open shader file: no such.shader");
    TakeGlErrors();
}

TEST(Studio, DrawsTheRestWithoutAShader) {
    Studio studio("no such.shader", "point.shader");
    const StepImage image = studio.TakePicture(*MakeModel(), {}, 1);
    EXPECT_EQ(CountBlue(image), 72u * 36u) << "the legend alone";
    TakeGlErrors();
}

TEST(Studio, LeavesNothingBehind) {
    const int before = CountGlObjects();
    {
        Studio studio("surface.shader", "point.shader");
        studio.TakePicture(*MakeModel(), {}, 1);
        EXPECT_GT(CountGlObjects(), before);
    }
    EXPECT_EQ(CountGlObjects(), before);
}

}  // namespace
}  // namespace zelmo
