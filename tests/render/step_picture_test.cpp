#include "render/step_picture.h"

#include <GL/glew.h>

#include <algorithm>

#include "tests/render/gl_test.h"
#include "tests/render/made_stack.h"

namespace zelmo {
namespace {

class StepPicture : public ::testing::Test {
protected:
    StepPicture() { step_.description = "oxide deposition"; }

    /// A model of a flat window, with no layer yet.
    static std::unique_ptr<ProcessModel> MakeModel(float width, float height, float angle) {
        auto model = MakeEmptyModel(width, height, 25);
        model->settings.cameraAngle = angle;
        return model;
    }

    StepImage Take(ProcessModel& model, std::int32_t number = 1) {
        SettleStack(model.stack, model.grid);
        return TakeStepPicture(model, step_, uploads_, tools_.Tools(), number, camera_, &problem_);
    }

    TestTools tools_;
    StackUploads uploads_;
    ProcessStep step_;
    std::unique_ptr<Camera> camera_;
    std::string problem_ = "not asked";
};

/// Blue, green, red, alpha at a place counted from the lower left.
std::array<int, 4> BgraAt(const StepImage& image, int x, int y) {
    const std::size_t start = (static_cast<std::size_t>(y) * static_cast<std::size_t>(image.width) +
                               static_cast<std::size_t>(x)) *
                              4;
    return {image.pixels.at(start), image.pixels.at(start + 1), image.pixels.at(start + 2),
            image.pixels.at(start + 3)};
}

TEST_F(StepPicture, HasTheNameOfItsNumberAndStep) {
    const auto model = MakeModel(100.0f, 100.0f, 30.0f);
    EXPECT_EQ(Take(*model, 1).name, L"001 oxide deposition");
    EXPECT_EQ(Take(*model, 6).name, L"006 oxide deposition");
    EXPECT_EQ(Take(*model, 1000).name, L"1000 oxide deposition");
    step_.description = "\xFC";
    EXPECT_EQ(Take(*model, 42).name, std::wstring(L"042 ") + static_cast<wchar_t>(0xFFFC));
    step_.description = "";
    EXPECT_EQ(Take(*model, 42).name, L"042 ");
}

TEST_F(StepPicture, IsAsHighAsTheCamerasAspectSays) {
    const auto model = MakeModel(100.0f, 100.0f, 30.0f);
    AddFilm(*model, 10.0f, {0.5f, 0.5f, 0.5f});
    const StepImage image = Take(*model);
    EXPECT_EQ(image.width, 1920);
    EXPECT_EQ(image.height, 885);
    EXPECT_EQ(image.pixels.size(), 1920u * 885u * 4u);
    ASSERT_NE(camera_, nullptr);
    EXPECT_NEAR(camera_->aspect, 2.167, 0.001);
    EXPECT_EQ(problem_, "");
}

TEST_F(StepPicture, IsNoFlatterThanFiveToOne) {
    const auto model = MakeModel(100.0f, 100.0f, 0.0f);
    AddFilm(*model, 10.0f, {0.5f, 0.5f, 0.5f});
    EXPECT_EQ(Take(*model).height, 384);
}

TEST_F(StepPicture, GrowsWithTheLegend) {
    const auto model = MakeModel(100.0f, 20.0f, 0.0f);
    for (int i = 0; i < 20; ++i) {
        AddFilm(*model, 0.1f, {0.5f, 0.5f, 0.5f});
    }
    EXPECT_EQ(Take(*model).height, 384);
    model->settings.showLegend = true;
    EXPECT_EQ(Take(*model).height, 720);
    EXPECT_EQ(model->stack.layerCount, 20);
}

TEST_F(StepPicture, ReplacesTheCameraAsTheStackGrows) {
    const auto model = MakeModel(100.0f, 100.0f, 30.0f);
    AddFilm(*model, 10.0f, {0.5f, 0.5f, 0.5f});
    Take(*model);
    const float before = camera_->eye[2];
    AddFilm(*model, 5.0f, {0.5f, 0.5f, 0.5f});
    Take(*model);
    EXPECT_EQ(camera_->eye[2], before + 5.0f);
}

TEST_F(StepPicture, BringsTheUploadsUpToDate) {
    const auto model = MakeModel(100.0f, 100.0f, 30.0f);
    Layer& film = AddFilm(*model, 10.0f, {1.0f, 0.0f, 0.0f});
    const StepImage before = Take(*model);
    EXPECT_NE(FindMesh(uploads_, film), nullptr);
    std::fill(film.top.begin(), film.top.end(), 5.0f);
    MarkChanged(film);
    const StepImage after = Take(*model);
    EXPECT_NE(FindMesh(uploads_, film), nullptr);
    EXPECT_NE(before.pixels, after.pixels) << "the film is lower";
}

TEST_F(StepPicture, HasBlueFirstAndTheBottomRowFirst) {
    const auto model = MakeModel(100.0f, 100.0f, 30.0f);
    AddFilm(*model, 10.0f, {1.0f, 0.4f, 0.0f});
    AddFilm(*model, 1.0f, {0.0f, 0.0f, 1.0f});
    model->settings.showLegend = true;
    const StepImage image = Take(*model);
    EXPECT_EQ(BgraAt(image, 0, 0), (std::array{0, 102, 255, 255}));
    EXPECT_EQ(BgraAt(image, 71, 35), (std::array{0, 102, 255, 255}));
    EXPECT_EQ(BgraAt(image, 0, 36), (std::array{255, 0, 0, 255}));
    EXPECT_EQ(BgraAt(image, 72, 0), (std::array{255, 255, 255, 255}));
    EXPECT_EQ(BgraAt(image, 0, image.height - 1), (std::array{255, 255, 255, 255}));
}

TEST_F(StepPicture, ShowsTheStackWhereItIs) {
    const auto model = MakeModel(100.0f, 100.0f, 30.0f);
    AddFilm(*model, 10.0f, {1.0f, 0.0f, 0.0f});
    AddFilm(*model, 1.0f, {0.0f, 0.0f, 1.0f});
    const StepImage image = Take(*model);
    // A point of the world on the picture.
    const auto at = [&](float x, float y, float z) {
        const Matrix4& m = camera_->transform;
        const float cx = m[0] * x + m[4] * y + m[8] * z + m[12];
        const float cy = m[1] * x + m[5] * y + m[9] * z + m[13];
        const float cw = m[3] * x + m[7] * y + m[11] * z + m[15];
        return BgraAt(image, static_cast<int>((cx / cw + 1.0f) * 960.0f),
                      static_cast<int>((cy / cw + 1.0f) * 0.5f * static_cast<float>(image.height)));
    };
    const auto isRed = [](const std::array<int, 4>& p) { return p[2] > 180 && p[0] < 40; };
    const auto isBlue = [](const std::array<int, 4>& p) { return p[0] > 180 && p[2] < 40; };
    EXPECT_TRUE(isBlue(at(50.0f, 50.0f, 11.0f))) << "the upper film's top";
    EXPECT_TRUE(isBlue(at(2.0f, 97.0f, 11.0f)));
    EXPECT_TRUE(isBlue(at(98.0f, 3.0f, 11.0f)));
    EXPECT_TRUE(isRed(at(50.0f, 0.0f, 5.0f))) << "the lower film's front wall";
    EXPECT_TRUE(isBlue(at(50.0f, 0.0f, 10.5f))) << "the upper film's front wall";
    EXPECT_EQ(at(-4.0f, 50.0f, 11.0f), (std::array{255, 255, 255, 255}));
    EXPECT_EQ(at(114.0f, 50.0f, 11.0f), (std::array{255, 255, 255, 255}));
}

TEST_F(StepPicture, LeavesNoObjectsAndNoFramebufferBehind) {
    const auto model = MakeModel(100.0f, 100.0f, 30.0f);
    AddFilm(*model, 10.0f, {0.5f, 0.5f, 0.5f});
    model->settings.showHeights = true;
    model->settings.showLegend = true;
    Take(*model);
    const int before = CountGlObjects();
    for (int i = 0; i < 5; ++i) {
        Take(*model);
    }
    EXPECT_EQ(CountGlObjects(), before);
    GLint bound = -1;
    glGetIntegerv(GL_FRAMEBUFFER_BINDING, &bound);
    EXPECT_EQ(bound, 0);
    EXPECT_EQ(problem_, "");
}

TEST_F(StepPicture, GivesTheSamePictureTwice) {
    const auto model = MakeModel(100.0f, 70.0f, 40.0f);
    AddFilm(*model, 10.0f, {0.5f, 0.5f, 0.5f});
    AddFilm(*model, 10.0f, {0.5f, 0.9f, 0.5f}).alpha = 0.4f;
    model->settings.showHeights = true;
    model->settings.showLegend = true;
    EXPECT_EQ(Take(*model).pixels, Take(*model).pixels);
}

TEST_F(StepPicture, TellsWhyItCannotBeDrawn) {
    GLint limit = 0;
    glGetIntegerv(GL_MAX_RENDERBUFFER_SIZE, &limit);
    const auto model = MakeModel(100.0f, 100.0f, 30.0f);
    model->settings.showLegend = true;
    const int layers = limit / 36 + 1;
    for (int i = 0; i < layers; ++i) {
        AppendLayer(model->stack, std::make_unique<Layer>());
        model->stack.layers.back()->changed = false;
    }
    const StepImage image = Take(*model);
    EXPECT_EQ(image.height, layers * 36) << "a picture of that size all the same";
    EXPECT_EQ(problem_, "1920 by " + std::to_string(layers * 36) + " pixels are more than the " +
                            std::to_string(limit) + " that OpenGL can draw");
    model->stack.layers.resize(1);
    Take(*model);
    EXPECT_EQ(problem_, "") << "and the next one is fine";
}

TEST_F(StepPicture, AsksForNoProblemWhereNobodyWantsToKnow) {
    const auto model = MakeModel(100.0f, 100.0f, 30.0f);
    Take(*model);          // makes the fonts, which may take away errors of OpenGL
    glEnable(0xFFFFFFFF);  // an error of OpenGL that nobody has looked at
    TakeStepPicture(*model, step_, uploads_, tools_.Tools(), 1, camera_);
    EXPECT_NE(TakeGlErrors(), static_cast<GLenum>(GL_NO_ERROR));
}

}  // namespace
}  // namespace zelmo
