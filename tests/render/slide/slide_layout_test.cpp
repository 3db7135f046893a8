#include "render/slide/slide_layout.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "model/process.h"
#include "render/picture_choice.h"

namespace zelmo {
namespace {

PictureChoice OfWidth(std::int32_t width) {
    PictureChoice choice;
    choice.width = width;
    return choice;
}

ProcessSettings WithLegend() {
    ProcessSettings settings;
    settings.showLegend = true;
    return settings;
}

TEST(SlideLayout, IsInProportionToTheWidth) {
    for (const ProcessSettings& settings : {ProcessSettings{}, WithLegend()}) {
        PictureChoice choice = OfWidth(960);
        choice.title = true;
        const SlideLayout small = LayOutSlide(choice, settings, 2.0, 12);
        choice.width = 3840;
        const SlideLayout large = LayOutSlide(choice, settings, 2.0, 12);
        EXPECT_EQ(large.unit, 4.0 * small.unit);
        EXPECT_NEAR(large.height, 4 * small.height, 4);
        EXPECT_NEAR(large.view.left, 4 * small.view.left, 4);
        EXPECT_NEAR(large.view.bottom, 4 * small.view.bottom, 4);
        EXPECT_NEAR(large.view.width, 4 * small.view.width, 4);
        EXPECT_NEAR(large.legendWidth, 4 * small.legendWidth, 4);
        EXPECT_NEAR(*large.titleBase, 4.0 * *small.titleBase, 4.0);
    }
}

TEST(SlideLayout, KeepsTheAspectOfTheViewAndRoomAroundIt) {
    const SlideLayout layout = LayOutSlide(OfWidth(1000), {}, 2.0, 3);
    EXPECT_EQ(layout.view.left, 0);
    EXPECT_EQ(layout.view.width, 1000);
    EXPECT_EQ(layout.view.height, 500);
    EXPECT_GT(layout.view.bottom, 20);
    EXPECT_GT(layout.height, layout.view.bottom + layout.view.height);
    EXPECT_FALSE(layout.titleBase);
    EXPECT_FALSE(layout.remarkBase);
    EXPECT_EQ(layout.legendWidth, 0);
}

TEST(SlideLayout, HasRoomForALongLegend) {
    const SlideLayout layout = LayOutSlide(OfWidth(1920), WithLegend(), 5.0, 60);
    EXPECT_GT(layout.height, 60 * 36 + 40);
    EXPECT_EQ(layout.height, layout.legendHeight);
}

TEST(SlideLayout, PutsTheTitleAboveEverything) {
    PictureChoice choice = OfWidth(1920);
    const SlideLayout without = LayOutSlide(choice, WithLegend(), 2.0, 60);
    choice.title = true;
    choice.thinnestFilm = 0.02f;
    const SlideLayout with = LayOutSlide(choice, WithLegend(), 2.0, 60);
    EXPECT_GT(with.height, without.height);
    ASSERT_TRUE(with.titleBase && with.remarkBase);
    EXPECT_GT(*with.titleBase, *with.remarkBase);
    EXPECT_GE(*with.remarkBase, with.legendHeight);
    EXPECT_LT(*with.titleBase, with.height);
}

TEST(SlideLayout, IsMagnifiedAsAWhole) {
    PictureChoice choice = OfWidth(777);
    choice.title = true;
    const SlideLayout layout = LayOutSlide(choice, WithLegend(), 2.0, 6);
    const SlideLayout large = Magnify(layout, 4);
    EXPECT_EQ(large.width, 4 * layout.width);
    EXPECT_EQ(large.height, 4 * layout.height);
    EXPECT_EQ(large.view.left, 4 * layout.view.left);
    EXPECT_EQ(large.unit, 4.0 * layout.unit);
    EXPECT_EQ(*large.titleBase, 4.0 * *layout.titleBase);
}

TEST(SlideLayout, RefusesAViewThatIsFarTooHigh) {
    EXPECT_THROW(LayOutSlide(OfWidth(1000), {}, 1e-6, 3), std::runtime_error);
}

TEST(Projector, TakesClipCoordinatesToTheView) {
    const Projector projector{{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}, {10, 20, 100, 50}};
    EXPECT_EQ(projector.At({-1.0f, -1.0f, 0.0f}).x, 10.0);
    EXPECT_EQ(projector.At({-1.0f, -1.0f, 0.0f}).y, 20.0);
    EXPECT_EQ(projector.At({1.0f, 1.0f, 0.0f}).x, 110.0);
    EXPECT_EQ(projector.At({1.0f, 1.0f, 0.0f}).y, 70.0);
}

}  // namespace
}  // namespace zelmo
