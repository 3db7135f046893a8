#include "pictures/smaller_image.h"

#include <gtest/gtest.h>

#include <cmath>

namespace zelmo {
namespace {

StepImage MakeVariedImage(std::int32_t width, std::int32_t height) {
    StepImage image;
    image.width = width;
    image.height = height;
    image.name = L"name";
    for (std::int32_t i = 0; i < width * height; ++i) {
        for (const std::int32_t factor : {1, 7, 31, 101}) {
            image.pixels.push_back(static_cast<std::uint8_t>(i * factor));
        }
    }
    return image;
}

TEST(SmallerImage, PicturesThatAreNotWiderStayAsTheyAre) {
    const StepImage image = MakeVariedImage(5, 3);
    for (const std::int32_t width : {0, 5, 6}) {
        const StepImage same = SmallerImage(image, width);
        EXPECT_EQ(same.width, 5);
        EXPECT_EQ(same.pixels, image.pixels);
    }
}

TEST(SmallerImage, EachPixelIsTheMeanOfWhatLiesOnIt) {
    // 5 by 4 pixels on 2 by 1: each takes two and a half columns.
    const StepImage image = MakeVariedImage(5, 4);
    const StepImage smaller = SmallerImage(image, 2);
    ASSERT_EQ(smaller.width, 2);
    ASSERT_EQ(smaller.height, 1);
    ASSERT_EQ(smaller.pixels.size(), 8u);
    EXPECT_EQ(smaller.name, L"name");
    for (std::size_t channel = 0; channel < 4; ++channel) {
        double left = 0.0;
        double right = 0.0;
        for (std::size_t row = 0; row < 4; ++row) {
            const double shares[] = {1.0, 1.0, 0.5, 0.0, 0.0};
            for (std::size_t col = 0; col < 5; ++col) {
                const double value = image.pixels[(row * 5 + col) * 4 + channel];
                left += shares[col] * value / 10.0;
                right += shares[4 - col] * value / 10.0;
            }
        }
        EXPECT_EQ(smaller.pixels[channel], std::floor(left + 0.5));
        EXPECT_EQ(smaller.pixels[4 + channel], std::floor(right + 0.5));
    }
}

TEST(SmallerImage, FlatPicturesAreOnePixelHigh) {
    const StepImage smaller = SmallerImage(MakeVariedImage(1000, 1), 10);
    EXPECT_EQ(smaller.width, 10);
    EXPECT_EQ(smaller.height, 1);
    EXPECT_EQ(smaller.pixels.size(), 40u);
}

}  // namespace
}  // namespace zelmo
