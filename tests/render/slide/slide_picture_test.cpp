#include "render/slide/slide_picture.h"

#include <GL/glew.h>

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

#include "render/studio.h"
#include "tests/render/gl_test.h"
#include "tests/render/made_stack.h"

namespace zelmo {
namespace {

constexpr std::array<float, 3> red{1.0f, 0.0f, 0.0f};
constexpr std::array<float, 3> blue{0.0f, 0.0f, 1.0f};
constexpr std::array<float, 3> green{0.0f, 1.0f, 0.0f};

bool IsRed(const Pixel& p) {
    return p.alpha > 0 && p.red > 60 && p.green < p.red / 3 && p.blue < p.red / 3;
}
bool IsBlue(const Pixel& p) {
    return p.alpha > 0 && p.blue > 60 && p.green < p.blue / 3 && p.red < p.blue / 3;
}
bool IsGreen(const Pixel& p) {
    return p.alpha > 0 && p.green > 60 && p.blue < p.green / 3 && p.red < p.green / 3;
}
bool IsInk(const Pixel& p) {
    return p.alpha > 128 && p.red < 60 && p.green < 60 && p.blue < 60;
}
bool IsDrawn(const Pixel& p) {
    return !(p == white) && p.alpha != 0;
}

Pixels PixelsOf(const StepImage& image) {
    Pixels pixels{image.width, image.height, {}};
    for (std::size_t i = 0; i < image.pixels.size(); i += 4) {
        pixels.pixels.push_back(
            {image.pixels[i + 2], image.pixels[i + 1], image.pixels[i], image.pixels[i + 3]});
    }
    return pixels;
}

int Width(const PixelBox& box) {
    return box.right - box.left;
}
int Height(const PixelBox& box) {
    return box.top - box.bottom;
}

class SlidePicture : public ::testing::Test {
protected:
    SlidePicture() { step_.description = "film"; }

    static std::unique_ptr<ProcessModel> MakeModel(float width = 100.0f, float depth = 60.0f) {
        auto model = MakeEmptyModel(width, depth, 101);
        model->settings.cameraAngle = 30.0f;
        model->steps.resize(5);
        return model;
    }

    /// Red on blue.
    static std::unique_ptr<ProcessModel> MakeTwoFilms() {
        auto model = MakeModel();
        AddFilm(*model, 10.0f, blue).label = "ground";
        AddFilm(*model, 6.0f, red).label = "film";
        return model;
    }

    StepImage Take(ProcessModel& model, const PictureChoice& choice, std::int32_t part = 8192,
                   std::int32_t viewport = 32768) {
        SettleStack(model.stack, model.grid);
        PictureTools tools = tools_.Tools();
        tools.largestPart = part;
        tools.largestViewport = viewport;
        StepImage image = TakeSlidePicture(model, step_, uploads_, tools, 2, choice, &problem_);
        EXPECT_EQ(problem_, "");
        EXPECT_EQ(TakeGlErrors(), 0u);
        return image;
    }

    Pixels Picture(ProcessModel& model, const PictureChoice& choice) {
        return PixelsOf(Take(model, choice));
    }

    TestTools tools_;
    StackUploads uploads_;
    ProcessStep step_;
    std::string problem_ = "not asked";
};

TEST_F(SlidePicture, IsAsWideAsItIsAskedForAndAllInProportion) {
    const auto model = MakeTwoFilms();
    model->settings.showLegend = true;
    model->settings.showHeights = true;
    PictureChoice choice;
    choice.smooth = true;
    choice.width = 640;
    const Pixels small = Picture(*model, choice);
    choice.width = 1280;
    const Pixels large = Picture(*model, choice);
    EXPECT_EQ(small.width, 640);
    EXPECT_EQ(large.width, 1280);
    EXPECT_NEAR(large.height, 2 * small.height, 2);
    for (const auto& test : {IsBlue, IsInk}) {
        const PixelBox a = small.BoxOf(test);
        const PixelBox b = large.BoxOf(test);
        EXPECT_NEAR(b.left, 2 * a.left, 6);
        EXPECT_NEAR(b.right, 2 * a.right, 6);
        EXPECT_NEAR(b.bottom, 2 * a.bottom, 6);
        EXPECT_NEAR(b.top, 2 * a.top, 6);
    }
}

/// Where the lower edge of what is drawn in a column lies, in pixels and parts of them.
double LowerEdge(const Pixels& picture, int x) {
    double below = 0.0;
    for (int y = 0; y < picture.height; ++y) {
        const int alpha = picture.At(x, y).alpha;
        if (alpha == 255) {
            return y - below;
        }
        below += alpha / 255.0;
    }
    return picture.height;
}

/// How far the lower edge is from a straight line at most.
double Unevenness(const Pixels& picture, int from, int to) {
    const double start = LowerEdge(picture, from);
    const double slope = (LowerEdge(picture, to) - start) / (to - from);
    double most = 0.0;
    double least = 0.0;
    for (int x = from; x <= to; ++x) {
        const double off = LowerEdge(picture, x) - start - slope * (x - from);
        most = std::max(most, off);
        least = std::min(least, off);
    }
    return (most - least) / 2.0;
}

TEST_F(SlidePicture, HasNoStairsWhereItIsSmooth) {
    const auto model = MakeModel();
    AddFilm(*model, 30.0f, red);
    PictureChoice choice;
    choice.width = 640;
    choice.transparent = true;
    choice.view = ViewDirection{5.0, 20.0, true};  // slants the foot of the front a little
    const Pixels rough = Picture(*model, choice);
    choice.smooth = true;
    const Pixels smooth = Picture(*model, choice);
    EXPECT_GT(std::abs(LowerEdge(smooth, 250) - LowerEdge(smooth, 100)), 3.0);
    EXPECT_GT(Unevenness(rough, 100, 250), 0.4);   // a stair is a pixel high
    EXPECT_LT(Unevenness(smooth, 100, 250), 0.2);  // 4 rows of samples a pixel
}

/// Bytes that differ by more than the eye sees.
std::size_t CountDifferent(const StepImage& a, const StepImage& b) {
    EXPECT_EQ(a.pixels.size(), b.pixels.size());
    std::size_t different = 0;
    for (std::size_t i = 0; i < std::min(a.pixels.size(), b.pixels.size()); ++i) {
        different += std::abs(a.pixels[i] - b.pixels[i]) > 24 ? 1 : 0;
    }
    return different;
}

TEST_F(SlidePicture, InPartsIsThePictureAsAWhole) {
    const auto model = MakeTwoFilms();
    model->settings.showLegend = true;
    model->settings.showHeights = true;
    PictureChoice choice;
    choice.title = true;
    choice.scale = true;
    for (const bool smooth : {false, true}) {
        for (const bool isFrontal : {true, false}) {
            choice.smooth = smooth;
            choice.width = smooth ? 400 : 1000;
            choice.view = isFrontal ? std::nullopt : std::optional(ViewDirection{120.0, 30.0});
            const StepImage whole = Take(*model, choice);
            // Marks and triangles are rounded a little otherwise in each part.
            const std::size_t few = whole.pixels.size() / 20000;
            EXPECT_LT(CountDifferent(whole, Take(*model, choice, 512)), few) << smooth << isFrontal;
            // The same with viewports that are smaller than the picture
            EXPECT_LT(CountDifferent(whole, Take(*model, choice, 256, 900)), few)
                << smooth << isFrontal;
        }
    }
}

TEST_F(SlidePicture, WithoutABackgroundHasTheOpacityOfWhatIsDrawn) {
    const auto model = MakeModel();
    Layer& glass = AddFilm(*model, 20.0f, blue);
    glass.alpha = 0.5f;
    PictureChoice choice;
    choice.width = 640;
    choice.transparent = true;
    choice.view = ViewDirection{0.0, 90.0, true};
    const StepImage image = Take(*model, choice);
    EXPECT_TRUE(image.isTransparent);
    const Pixels picture = PixelsOf(image);
    EXPECT_EQ(picture.At(0, picture.height - 1), (Pixel{0, 0, 0, 0}));
    // From above two sheets of half the opacity cover three quarters, in the film's colour.
    const Pixel middle = picture.At(320, picture.height / 2);
    EXPECT_NEAR(middle.alpha, 191, 2);
    EXPECT_GT(middle.blue, 200);
    EXPECT_LT(middle.red, 30);
    glass.alpha = 1.0f;
    MarkChanged(glass);
    EXPECT_EQ(Picture(*model, choice).At(320, picture.height / 2).alpha, 255);
}

TEST_F(SlidePicture, OverWhiteIsThePictureWithoutABackgroundLaidOverWhite) {
    const auto model = MakeTwoFilms();
    model->stack.layers[1]->alpha = 0.4f;
    model->settings.showLegend = true;
    PictureChoice choice;
    choice.width = 640;
    choice.smooth = true;
    const Pixels opaque = Picture(*model, choice);
    choice.transparent = true;
    const Pixels clear = Picture(*model, choice);
    for (std::size_t i = 0; i < clear.pixels.size(); ++i) {
        const Pixel& p = clear.pixels[i];
        const auto over = [&](int color) {
            return (color * p.alpha + 255 * (255 - p.alpha)) / 255;
        };
        ASSERT_NEAR(opaque.pixels[i].red, over(p.red), 2);
        ASSERT_NEAR(opaque.pixels[i].green, over(p.green), 2);
        ASSERT_NEAR(opaque.pixels[i].blue, over(p.blue), 2);
        ASSERT_EQ(opaque.pixels[i].alpha, 255);
    }
}

TEST_F(SlidePicture, CroppedHasAMarginAroundWhatIsDrawn) {
    const auto model = MakeTwoFilms();
    PictureChoice choice;
    choice.width = 960;
    choice.crop = true;
    for (const bool showLegend : {false, true}) {
        model->settings.showLegend = showLegend;
        const Pixels picture = Picture(*model, choice);
        const PixelBox drawn = picture.BoxOf(IsDrawn);
        EXPECT_EQ(drawn.left, 12);
        EXPECT_EQ(picture.width - drawn.right, 12);
        if (!showLegend) {  // which stands on the edge of the picture
            EXPECT_EQ(drawn.bottom, 12);
        }
        EXPECT_EQ(picture.height - drawn.top, 12);
    }
}

TEST_F(SlidePicture, CroppedIsNoLargerThanThePicture) {
    const auto model = MakeTwoFilms();
    model->settings.showLegend = true;
    PictureChoice choice;
    choice.width = 960;
    const Pixels whole = Picture(*model, choice);
    choice.crop = true;
    const Pixels cropped = Picture(*model, choice);
    EXPECT_LE(cropped.width, whole.width);
    EXPECT_LT(cropped.height, whole.height);
    const auto count = [](const Pixels& p) {
        return std::count_if(p.pixels.begin(), p.pixels.end(), IsDrawn);
    };
    EXPECT_EQ(count(cropped), count(whole));  // nothing is cut off
}

TEST_F(SlidePicture, OfAParallelViewCanBeMeasuredIn) {
    // A bar of 20 um by 10 um on a window of 100 um by 60 um, from above: the window fills the
    // picture but for a tenth.
    const auto model = MakeModel();
    AddFilm(*model, 5.0f, blue);
    Layer& bar = AddFilm(*model, 2.0f, red);
    const float spacing = model->grid.spacing;
    for (std::int32_t row = 0; row < model->grid.rows; ++row) {
        for (std::int32_t col = 0; col < model->grid.columns; ++col) {
            const float x = static_cast<float>(col) * spacing - model->grid.marginX;
            const float y = static_cast<float>(row) * spacing - model->grid.marginY;
            const auto cell = static_cast<std::size_t>(row * model->grid.columns + col);
            if (!(x >= 30.0f && x <= 50.0f && y >= 20.0f && y <= 30.0f)) {
                bar.top[cell] = bar.bottom[cell];
            }
        }
    }
    PictureChoice choice;
    choice.width = 1100;
    choice.view = ViewDirection{0.0, 90.0, true};
    const Pixels picture = Picture(*model, choice);
    constexpr double pixelsPerMicron = 10.0;
    const PixelBox window = picture.BoxOf([](const Pixel& p) { return IsBlue(p) || IsRed(p); });
    const double cell = static_cast<double>(spacing) * pixelsPerMicron;
    EXPECT_NEAR(Width(window), 100.0 * pixelsPerMicron, cell + 1.0);
    EXPECT_NEAR(Height(window), 60.0 * pixelsPerMicron, cell + 1.0);
    // A film's sheets reach one cell beyond it.
    const PixelBox box = picture.BoxOf(IsRed);
    EXPECT_NEAR(Width(box), 20.0 * pixelsPerMicron, 2.0 * cell + 1.0);
    EXPECT_NEAR(Height(box), 10.0 * pixelsPerMicron, 2.0 * cell + 1.0);
    EXPECT_NEAR((box.left + box.right) / 2.0 - window.left, 40.0 * pixelsPerMicron, cell + 1.0);
}

TEST_F(SlidePicture, ShowsTheWallsOfTheSidesThatAreSeen) {
    // The films differ in colour on each side by what the side faces; a missing wall would show
    // the inside of the other walls or none.
    const auto model = MakeTwoFilms();
    PictureChoice choice;
    choice.width = 640;
    for (const double azimuth : {0.0, 90.0, 180.0, 270.0}) {
        choice.view = ViewDirection{azimuth, 0.0, true};
        const Pixels picture = Picture(*model, choice);
        const PixelBox lower = picture.BoxOf(IsBlue);
        const PixelBox upper = picture.BoxOf(IsRed);
        const bool isFromASide = std::fmod(azimuth, 180.0) != 0.0;
        const double shown = isFromASide ? 60.0 : 100.0;
        EXPECT_NEAR(Height(lower) / static_cast<double>(Width(lower)), 10.0 / shown, 0.02);
        EXPECT_NEAR(Height(upper) / static_cast<double>(Width(upper)), 6.0 / shown, 0.02);
        EXPECT_EQ(upper.bottom, lower.top);
        const int filled =
            static_cast<int>(std::count_if(picture.pixels.begin(), picture.pixels.end(), IsBlue));
        EXPECT_EQ(filled, Width(lower) * Height(lower)) << azimuth;
    }
}

TEST_F(SlidePicture, SidesThatFaceTheEyeAreLitAlikeAllAround) {
    const auto model = MakeTwoFilms();
    PictureChoice choice;
    choice.width = 640;
    std::vector<Pixel> colors;
    for (const double azimuth : {0.0, 90.0, 180.0, 270.0}) {
        choice.view = ViewDirection{azimuth, 0.0, true};
        const Pixels picture = Picture(*model, choice);
        const PixelBox lower = picture.BoxOf(IsBlue);
        colors.push_back(
            picture.At((lower.left + lower.right) / 2, (lower.bottom + lower.top) / 2));
    }
    EXPECT_EQ(colors, std::vector<Pixel>(4, colors[0]));
}

TEST_F(SlidePicture, FromBelowShowsTheUnderside) {
    const auto model = MakeTwoFilms();
    PictureChoice choice;
    choice.width = 640;
    choice.view = ViewDirection{30.0, -90.0, true};
    const Pixels picture = Picture(*model, choice);
    EXPECT_GT(std::count_if(picture.pixels.begin(), picture.pixels.end(), IsBlue), 40000);
    EXPECT_EQ(std::count_if(picture.pixels.begin(), picture.pixels.end(), IsRed), 0);
}

TEST_F(SlidePicture, HasRoomForAHigherStackThanItsOwn) {
    const auto model = MakeModel();
    model->settings.showLegend = true;
    AddFilm(*model, 10.0f, blue).label = "ground";
    PictureChoice choice;
    choice.width = 640;
    const auto higher = MakeTwoFilms();
    higher->settings.showLegend = true;
    SettleStack(higher->stack, higher->grid);
    SettleStack(model->stack, model->grid);
    for (const bool crop : {false, true}) {
        choice.crop = crop;
        choice.room.reset();
        const Pixels alone = Picture(*model, choice);
        choice.room = RoomOf(*higher, choice);
        EXPECT_EQ(choice.room, (PictureRoom{16.0f, 2}));
        const Pixels low = Picture(*model, choice);
        const Pixels high = Picture(*higher, choice);
        EXPECT_EQ(low.width, high.width);
        EXPECT_EQ(low.height, high.height);
        EXPECT_NE(low.height, alone.height);
        // The same place is at the same pixel: the foot of the front.
        const auto foot = [](const Pixels& p) {
            const PixelBox box = p.BoxOf(IsBlue);
            return std::pair(p.BoxOf(IsInk).bottom, box.right);
        };
        EXPECT_EQ(foot(low).first, foot(high).first);
        EXPECT_NEAR(foot(low).second, foot(high).second, 1);
    }
}

TEST_F(SlidePicture, SaysItsStepAtTheTop) {
    const auto model = MakeTwoFilms();
    PictureChoice choice;
    choice.width = 960;
    choice.scale = true;
    const Pixels without = Picture(*model, choice);
    choice.title = true;
    const Pixels with = Picture(*model, choice);
    EXPECT_EQ(with.height - without.height, 38);
    const auto ink = [](const Pixels& p, int rows) {
        int count = 0;
        for (int y = p.height - rows; y < p.height; ++y) {
            for (int x = 0; x < p.width; ++x) {
                count += IsInk(p.At(x, y)) ? 1 : 0;
            }
        }
        return count;
    };
    EXPECT_EQ(ink(without, 38), 0);
    EXPECT_GT(ink(with, 38), 300);
    step_.description =
        "a step with a description that is far too long to be shown as a title of "
        "a picture that has room for some forty characters or perhaps for fifty";
    const Pixels tooLong = Picture(*model, choice);
    EXPECT_LT(tooLong.BoxOf(IsInk).right, tooLong.width);
}

TEST_F(SlidePicture, HasBarsBesideTheStack) {
    const auto model = MakeTwoFilms();
    PictureChoice choice;
    choice.width = 1100;
    choice.view = ViewDirection{0.0, 90.0, true};
    choice.scale = true;
    const Pixels picture = Picture(*model, choice);
    const PixelBox window = picture.BoxOf(IsRed);
    const double pixelsPerMicron = Width(window) / 100.0;
    // Of 20 um: the longest row of ink below the window, the longest column at its right
    int longestRow = 0;
    for (int y = 0; y < window.bottom; ++y) {
        int run = 0;
        for (int x = 0; x < picture.width; ++x) {
            run = IsInk(picture.At(x, y)) ? run + 1 : 0;
            longestRow = std::max(longestRow, run);
        }
    }
    int longestColumn = 0;
    for (int x = window.right; x < picture.width; ++x) {
        int run = 0;
        for (int y = 0; y < picture.height; ++y) {
            run = IsInk(picture.At(x, y)) ? run + 1 : 0;
            longestColumn = std::max(longestColumn, run);
        }
    }
    EXPECT_NEAR(longestRow, 20.0 * pixelsPerMicron, 4.0);
    EXPECT_NEAR(longestColumn, 10.0 * pixelsPerMicron, 4.0);
}

TEST_F(SlidePicture, FramesTheSwatchesAndShowsFilmsOverWhite) {
    const auto model = MakeTwoFilms();
    model->stack.layers[1]->alpha = 0.25f;
    model->settings.showLegend = true;
    PictureChoice choice;
    choice.title = true;
    choice.transparent = true;
    const Pixels picture = Picture(*model, choice);
    // Swatches are 72 by 28 pixels, from 24 on, 36 pixels apart; the second is the thin red.
    const Pixel ground = picture.At(60, 24 + 18);
    EXPECT_EQ(ground, (Pixel{0, 0, 255, 255}));
    const Pixel film = picture.At(60, 24 + 36 + 18);
    EXPECT_NEAR(film.red, 255, 1);
    EXPECT_NEAR(film.green, 191, 1);
    EXPECT_EQ(film.alpha, 255);
    const Pixel frame = picture.At(24, 24 + 18);
    EXPECT_LT(frame.red, 120);
    EXPECT_EQ(frame.red, frame.blue);
    EXPECT_EQ(picture.At(10, 24 + 18).alpha, 0);  // the margin
    EXPECT_EQ(picture.At(60, 24 + 34).alpha, 0);  // between two swatches
}

TEST_F(SlidePicture, MakesAThinFilmVisibleAndSaysSo) {
    auto model = MakeModel();
    AddFilm(*model, 10.0f, blue);
    AddFilm(*model, 0.003f, green);
    AddFilm(*model, 6.0f, red);
    PictureChoice choice;
    choice.width = 1100;
    choice.smooth = true;
    choice.view = ViewDirection{0.0, 0.0, true};
    const Pixels before = Picture(*model, choice);
    EXPECT_EQ(std::count_if(before.pixels.begin(), before.pixels.end(), IsGreen), 0);
    EXPECT_EQ(before.BoxOf(IsInk).top, before.BoxOf(IsInk).top);
    choice.thinnestFilm = 1.0f;
    const Pixels after = Picture(*model, choice);
    const PixelBox film = after.BoxOf(IsGreen);
    EXPECT_NEAR(Height(film), 10, 2);
    EXPECT_NEAR(Width(film), 1000, 12);
    EXPECT_GT(after.BoxOf(IsInk).top, after.BoxOf(IsRed).top);
    EXPECT_LT(before.BoxOf(IsInk).top, before.BoxOf(IsBlue).top);
    EXPECT_EQ(model->stack.layers[1]->top[0], 10.003f);
    // Nothing is said where nothing is thin.
    choice.thinnestFilm = 0.001f;
    const Pixels thick = Picture(*model, choice);
    EXPECT_LT(thick.BoxOf(IsInk).top, thick.BoxOf(IsBlue).top);
}

TEST_F(SlidePicture, LabelsHeightsAsTheyAreNotAsTheyAreDrawn) {
    // With markers only: the label of a height of 8 um has as much ink with thickened films.
    auto model = MakeModel();
    AddFilm(*model, 8.0f, blue);
    AddFilm(*model, 0.002f, green);
    model->settings.showHeights = true;
    PictureChoice choice;
    choice.width = 960;
    choice.thinnestFilm = 0.001f;  // nothing is thin
    choice.room = PictureRoom{9.0f, 2};
    const Pixels measured = Picture(*model, choice);
    choice.thinnestFilm = 0.0025f;
    const Pixels thickened = Picture(*model, choice);
    const auto ink = [](const Pixels& p) {
        // Below the line that tells of thickened films
        int count = 0;
        for (int y = 0; y < p.height - 30; ++y) {
            for (int x = 0; x < p.width; ++x) {
                count += IsInk(p.At(x, y)) ? 1 : 0;
            }
        }
        return count;
    };
    EXPECT_EQ(measured.height, thickened.height);
    EXPECT_NEAR(ink(measured), ink(thickened), 20);
    EXPECT_GT(ink(measured), 1000);
}

TEST_F(SlidePicture, LeavesTheGlStateAsItWas) {
    const auto model = MakeTwoFilms();
    PictureChoice choice;
    choice.smooth = true;
    choice.width = 640;
    Take(*model, choice);
    EXPECT_TRUE(glIsEnabled(GL_DEPTH_TEST));
    EXPECT_TRUE(glIsEnabled(GL_BLEND));
    GLint value = 0;
    glGetIntegerv(GL_BLEND_DST_ALPHA, &value);
    EXPECT_EQ(value, GL_ONE_MINUS_SRC_ALPHA);
    glGetIntegerv(GL_BLEND_SRC_ALPHA, &value);
    EXPECT_EQ(value, GL_SRC_ALPHA);
    glGetIntegerv(GL_FRAMEBUFFER_BINDING, &value);
    EXPECT_EQ(value, 0);
    const int before = CountGlObjects();
    Take(*model, choice);
    EXPECT_EQ(CountGlObjects(), before);
}

TEST_F(SlidePicture, WhatIsHiddenIsLeftOutWithoutATrace) {
    const auto model = MakeTwoFilms();
    Layer& glass = AddFilm(*model, 3.0f, green);
    glass.alpha = 0.3f;
    AddFilm(*model, 2.0f, blue);
    SettleStack(model->stack, model->grid);
    PictureChoice choice;
    choice.width = 500;
    choice.smooth = true;
    Studio choosing("surface.shader", "point.shader");
    Studio whole("surface.shader", "point.shader", std::nullopt);
    const StepImage a = choosing.TakePicture(*model, step_, 1, choice);
    const StepImage b = whole.TakePicture(*model, step_, 1, choice);
    EXPECT_TRUE(a.pixels == b.pixels);
}

TEST(Studio, TakesTheUsualPictureWhereNothingElseIsChosen) {
    const auto model = MakeEmptyModel(100.0f, 60.0f, 51);
    model->settings.cameraAngle = 30.0f;
    model->settings.showLegend = true;
    AddFilm(*model, 10.0f, blue).label = "ground";
    SettleStack(model->stack, model->grid);
    Studio studio("surface.shader", "point.shader");
    const StepImage usual = studio.TakePicture(*model, {}, 1);
    const StepImage chosen = studio.TakePicture(*model, {}, 1, PictureChoice{});
    EXPECT_TRUE(usual.pixels == chosen.pixels);
    PictureChoice smooth;
    smooth.smooth = true;
    const StepImage other = studio.TakePicture(*model, {}, 1, smooth);
    EXPECT_FALSE(usual.pixels == other.pixels);
    // Both may be taken in turn.
    EXPECT_TRUE(studio.TakePicture(*model, {}, 1).pixels == usual.pixels);
}

}  // namespace
}  // namespace zelmo
