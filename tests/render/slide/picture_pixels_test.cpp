#include "render/slide/picture_pixels.h"

#include <gtest/gtest.h>

namespace zelmo {
namespace {

using Bytes = std::vector<std::uint8_t>;

StepImage ImageOf(std::int32_t width, std::int32_t height, Bytes pixels = {}) {
    StepImage image;
    image.width = width;
    image.height = height;
    image.pixels = std::move(pixels);
    image.pixels.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4);
    return image;
}

void Set(StepImage& image, std::int32_t x, std::int32_t y, std::uint8_t value) {
    const auto pixel = static_cast<std::size_t>(y * image.width + x);
    std::fill_n(image.pixels.begin() + static_cast<std::ptrdiff_t>(pixel * 4), 4, value);
}

TEST(DivideIntoParts, CoversThePictureOnceWithPartsThatFit) {
    for (const auto& [width, height] :
         {std::pair{1920, 1080}, {1, 1}, {8192, 4096}, {16384, 9001}}) {
        const auto parts = DivideIntoParts(width, height, 2000, 700, 500000);
        std::int64_t pixels = 0;
        for (const PixelRect& part : parts) {
            EXPECT_GT(part.width, 0);
            EXPECT_GT(part.height, 0);
            EXPECT_LE(part.width, 2000);
            EXPECT_LE(part.height, 700);
            EXPECT_LE(part.left + part.width, width);
            EXPECT_LE(part.bottom + part.height, height);
            EXPECT_LE(std::int64_t{part.width} * part.height, 500000);
            pixels += std::int64_t{part.width} * part.height;
        }
        EXPECT_EQ(pixels, std::int64_t{width} * height);
    }
    EXPECT_EQ(DivideIntoParts(100, 50, 100, 50, 5000).size(), 1u);
}

TEST(AverageSquares, TakesTheMeanOfEachSquareAndRounds) {
    // Two squares of two by two; bytes of one channel differ.
    const Bytes rows{10, 0, 0, 255, 11, 0, 0, 255, 200, 1, 2, 0, 200, 1, 2, 0,
                     10, 0, 0, 255, 11, 0, 0, 254, 200, 1, 2, 4, 200, 1, 2, 0};
    Bytes means(8);
    AverageSquares(rows, 2, 2, means.data());
    EXPECT_EQ(means, (Bytes{11, 0, 0, 255, 200, 1, 2, 1}));
}

TEST(AverageSquares, OfOnePixelIsThePixel) {
    const Bytes rows{1, 2, 3, 4, 5, 6, 7, 8};
    Bytes means(8);
    AverageSquares(rows, 1, 2, means.data());
    EXPECT_EQ(means, rows);
}

TEST(FindDrawn, IsTheSmallestBoxAroundEverythingThatHasOpacity) {
    StepImage image = ImageOf(20, 10);
    EXPECT_EQ(FindDrawn(image), (PixelRect{0, 0, 0, 0}));
    Set(image, 3, 7, 1);
    EXPECT_EQ(FindDrawn(image), (PixelRect{3, 7, 1, 1}));
    Set(image, 15, 2, 255);
    EXPECT_EQ(FindDrawn(image), (PixelRect{3, 2, 13, 6}));
}

TEST(FinishPixels, PutsWhiteBehindWhatIsThere) {
    // Nothing, half of black, all of a colour
    StepImage image = ImageOf(3, 1, {0, 0, 0, 0, 0, 0, 0, 128, 10, 20, 30, 255});
    FinishPixels(image, false);
    EXPECT_FALSE(image.isTransparent);
    EXPECT_EQ(image.pixels, (Bytes{255, 255, 255, 255, 127, 127, 127, 255, 10, 20, 30, 255}));
}

TEST(FinishPixels, WithoutABackgroundKeepsColoursAndOpacity) {
    StepImage image = ImageOf(3, 1, {0, 0, 0, 0, 50, 0, 100, 128, 10, 20, 30, 255});
    FinishPixels(image, true);
    EXPECT_TRUE(image.isTransparent);
    EXPECT_EQ(image.pixels, (Bytes{0, 0, 0, 0, 100, 0, 199, 128, 10, 20, 30, 255}));
}

TEST(Crop, KeepsAPart) {
    StepImage image = ImageOf(4, 3);
    Set(image, 1, 1, 5);
    Set(image, 2, 2, 9);
    Crop(image, {1, 1, 2, 2});
    EXPECT_EQ(image.width, 2);
    EXPECT_EQ(image.height, 2);
    EXPECT_EQ(image.pixels, (Bytes{5, 5, 5, 5, 0, 0, 0, 0, 0, 0, 0, 0, 9, 9, 9, 9}));
}

TEST(Crop, EndsAtThePicturesEdges) {
    StepImage image = ImageOf(4, 3);
    Crop(image, {-10, 1, 12, 100});
    EXPECT_EQ(image.width, 2);
    EXPECT_EQ(image.height, 2);
    Crop(image, {50, 0, 10, 10});  // of nothing nothing is left: it stays
    EXPECT_EQ(image.width, 2);
}

}  // namespace
}  // namespace zelmo
