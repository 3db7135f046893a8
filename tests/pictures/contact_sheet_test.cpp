#include "pictures/contact_sheet.h"

#include <gtest/gtest.h>

#include <array>
#include <stdexcept>

namespace zelmo {
namespace {

using Pixel = std::array<int, 4>;

constexpr Pixel white{255, 255, 255, 255};
constexpr Pixel red{0, 0, 255, 255};
constexpr Pixel blue{255, 0, 0, 255};

StepImage Filled(std::int32_t width, std::int32_t height, const Pixel& pixel) {
    StepImage image;
    image.width = width;
    image.height = height;
    for (std::int32_t i = 0; i < width * height; ++i) {
        for (const int channel : pixel) {
            image.pixels.push_back(static_cast<std::uint8_t>(channel));
        }
    }
    return image;
}

/// Counted from the upper left corner.
Pixel At(const StepImage& image, std::int32_t x, std::int32_t y) {
    const std::size_t at =
        (static_cast<std::size_t>(image.height - 1 - y) * static_cast<std::size_t>(image.width) +
         static_cast<std::size_t>(x)) *
        4;
    return {image.pixels.at(at), image.pixels.at(at + 1), image.pixels.at(at + 2),
            image.pixels.at(at + 3)};
}

std::size_t Count(const StepImage& image, const Pixel& pixel) {
    std::size_t count = 0;
    for (std::int32_t y = 0; y < image.height; ++y) {
        for (std::int32_t x = 0; x < image.width; ++x) {
            count += At(image, x, y) == pixel ? 1 : 0;
        }
    }
    return count;
}

TEST(StackImages, PutsOnePictureAboveTheOther) {
    const StepImage both = StackImages(Filled(4, 3, red), Filled(2, 1, blue));
    ASSERT_EQ(both.width, 4);
    ASSERT_EQ(both.height, 4);
    EXPECT_EQ(At(both, 0, 2), red);
    EXPECT_EQ(At(both, 0, 3), white);
    EXPECT_EQ(At(both, 1, 3), blue);
    EXPECT_EQ(At(both, 2, 3), blue);
    EXPECT_EQ(At(both, 3, 3), white);
}

TEST(StackImages, WhatIsTransparentShowsWhite) {
    StepImage half = Filled(1, 1, {0, 0, 255, 128});
    half.isTransparent = true;
    EXPECT_EQ(At(StackImages(half, Filled(1, 1, blue)), 0, 0), (Pixel{127, 127, 255, 255}));
    half.isTransparent = false;  // its alpha says nothing then
    EXPECT_EQ(At(StackImages(half, Filled(1, 1, blue)), 0, 0), red);
}

TEST(ContactSheet, HasThePicturesInRowsWithGaps) {
    const auto pictureOf = [](std::size_t i) { return Filled(10, 6, i == 2 ? blue : red); };
    const StepImage sheet = ContactSheet(3, 10, 6, 2, pictureOf);
    const std::int32_t gap = 16;
    ASSERT_EQ(sheet.width, 3 * gap + 20);
    ASSERT_EQ(sheet.height, 3 * gap + 12);
    EXPECT_EQ(At(sheet, gap - 1, gap), white);
    EXPECT_EQ(At(sheet, gap, gap - 1), white);
    EXPECT_EQ(At(sheet, gap, gap), red);
    EXPECT_EQ(At(sheet, 2 * gap + 19, gap + 5), red);
    EXPECT_EQ(At(sheet, gap, 2 * gap + 6), blue);
    EXPECT_EQ(Count(sheet, red), 120u);
    EXPECT_EQ(Count(sheet, blue), 60u);
    EXPECT_EQ(Count(sheet, white) + 180, sheet.pixels.size() / 4);
}

TEST(ContactSheet, SmallerPicturesStandAtTheTopOfTheirPlace) {
    const StepImage sheet =
        ContactSheet(1, 10, 6, 1, [](std::size_t) { return Filled(4, 2, red); });
    EXPECT_EQ(Count(sheet, red), 8u);
    EXPECT_EQ(At(sheet, 16 + 3, 16), red);
    EXPECT_EQ(At(sheet, 16 + 6, 17), red);
}

TEST(ContactSheet, ThatNobodyCouldReadIsRefused) {
    EXPECT_THROW(ContactSheet(2000, 16383, 16383, 100, [](std::size_t) { return StepImage(); }),
                 std::bad_alloc);
}

TEST(SheetColumns, MakeSheetsLikeScreens) {
    EXPECT_EQ(SheetColumns(1, 480, 400), 1);
    EXPECT_EQ(SheetColumns(4, 480, 300), 2);
    for (const std::size_t count : {5u, 17u, 66u, 300u}) {
        const std::int32_t columns = SheetColumns(count, 480, 400);
        const auto rows = (static_cast<std::int32_t>(count) + columns - 1) / columns;
        EXPECT_NEAR(columns * 496.0 / (rows * 416.0), 1.6, 0.7) << count;
    }
}

}  // namespace
}  // namespace zelmo
