#include "desktop/picture_list.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <stdexcept>

namespace zelmo {
namespace {

/// A picture whose pixel bytes tell their place: blue the column, green the row, both modulo 251.
StepImage MakePicture(std::int32_t width, std::int32_t height) {
    StepImage image;
    image.width = width;
    image.height = height;
    for (std::int32_t y = 0; y < height; ++y) {
        for (std::int32_t x = 0; x < width; ++x) {
            image.pixels.insert(image.pixels.end(), {static_cast<std::uint8_t>(x % 251),
                                                     static_cast<std::uint8_t>(y % 251),
                                                     std::uint8_t{7}, std::uint8_t{200}});
        }
    }
    return image;
}

TEST(FitPicture, WidePictureIsScaledByTheHeightOfTheAreaAndCentred) {
    const FittedPicture fitted = FitPicture(MakePicture(1920, 1080), 1184, 450);
    const float scale = 450.0f / 1080.0f;
    EXPECT_EQ(fitted.image.width, static_cast<std::int32_t>(1920.0f * scale));
    EXPECT_EQ(fitted.image.height, static_cast<std::int32_t>(1080.0f * scale));
    EXPECT_EQ(fitted.image.width, 800);
    EXPECT_EQ(fitted.x, (1184 - fitted.image.width) / 2);
    EXPECT_EQ(fitted.y, (450 - fitted.image.height) / 2);
}

TEST(FitPicture, TallPictureLeavesMarginsLeftAndRight) {
    const FittedPicture fitted = FitPicture(MakePicture(192, 300), 1184, 150);
    EXPECT_EQ(fitted.image.height, 150);
    EXPECT_EQ(fitted.image.width, 96);
    EXPECT_EQ(fitted.x, 544);
    EXPECT_EQ(fitted.y, 0);
}

TEST(FitPicture, EveryPixelIsTheNearestOfTheSourceByTruncation) {
    const StepImage source = MakePicture(192, 108);
    const FittedPicture fitted = FitPicture(source, 71, 50);
    const float scale = 71.0f / 192.0f;
    ASSERT_EQ(fitted.image.width, static_cast<std::int32_t>(192.0f * scale));
    std::size_t at = 0;
    for (std::int32_t y = 0; y < fitted.image.height; ++y) {
        for (std::int32_t x = 0; x < fitted.image.width; ++x, at += 4) {
            const auto row = static_cast<std::int32_t>(static_cast<float>(y) / scale);
            const auto column = static_cast<std::int32_t>(static_cast<float>(x) / scale);
            ASSERT_EQ(fitted.image.pixels[at], column % 251);
            ASSERT_EQ(fitted.image.pixels[at + 1], row % 251);
            ASSERT_EQ(fitted.image.pixels[at + 3], 200);
        }
    }
}

TEST(FitPicture, PictureOfTheSameSizeComesOutAsItIs) {
    const StepImage source = MakePicture(40, 30);
    const FittedPicture fitted = FitPicture(source, 40, 30);
    EXPECT_EQ(fitted.image.pixels, source.pixels);
    EXPECT_EQ(fitted.x, 0);
    EXPECT_EQ(fitted.y, 0);
}

TEST(FitPicture, AreaWithoutSizeGivesAnEmptyPicture) {
    const FittedPicture fitted = FitPicture(MakePicture(40, 30), 0, 100);
    EXPECT_EQ(fitted.image.width, 0);
    EXPECT_TRUE(fitted.image.pixels.empty());
}

TEST(PictureList, LeftOnTheFirstGoesToTheLastAndRightOnTheLastToTheFirst) {
    PictureList list;
    list.images.resize(3);
    list.GoLeft();
    EXPECT_EQ(list.currentImage, 2);
    list.GoRight();
    EXPECT_EQ(list.currentImage, 0);
    list.GoRight();
    EXPECT_EQ(list.currentImage, 1);
    list.GoLeft();
    EXPECT_EQ(list.currentImage, 0);
}

TEST(PictureList, WithoutPicturesTheRangeErrorIsRaised) {
    PictureList list;
    list.GoLeft();
    EXPECT_EQ(list.currentImage, -1);
    try {
        list.Current();
        FAIL() << "no error";
    } catch (const std::out_of_range& error) {
        EXPECT_STREQ(error.what(), "invalid vector subscript");
    }
    list.GoRight();
    EXPECT_EQ(list.currentImage, 0);
    EXPECT_THROW(list.Current(), std::out_of_range);
    list.GoRight();
    EXPECT_EQ(list.currentImage, 1);
}

}  // namespace
}  // namespace zelmo
