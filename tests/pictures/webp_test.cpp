#include "pictures/webp.h"

#include <gtest/gtest.h>
#include <webp/decode.h>

#include <cstdlib>
#include <memory>

namespace zelmo {
namespace {

struct WebpCloser {
    void operator()(std::uint8_t* pixels) const { WebPFree(pixels); }
};

/// Blue, green, red, alpha from the top, of a picture of this size; nothing if it is none.
std::vector<std::uint8_t> Decode(const std::vector<std::uint8_t>& bytes, int width, int height) {
    int w = 0;
    int h = 0;
    const std::unique_ptr<std::uint8_t, WebpCloser> pixels(
        WebPDecodeBGRA(bytes.data(), bytes.size(), &w, &h));
    if (pixels == nullptr || w != width || h != height) {
        return {};
    }
    return {pixels.get(), pixels.get() + std::ptrdiff_t{4} * w * h};
}

TEST(LosslessWebp, TurnsThePictureTheRightWayUpAndLeavesItsAlphaOut) {
    StepImage image;
    image.width = 2;
    image.height = 2;
    // blue, green, red, alpha; the bottom row first
    image.pixels = {1, 2, 3, 0, 4, 5, 6, 10, 7, 8, 9, 128, 10, 11, 12, 255};
    EXPECT_EQ(
        Decode(LosslessWebp(image), 2, 2),
        (std::vector<std::uint8_t>{7, 8, 9, 255, 10, 11, 12, 255, 1, 2, 3, 255, 4, 5, 6, 255}));
}

TEST(LosslessWebp, KeepsEveryPixel) {
    StepImage image;
    image.width = 61;
    image.height = 37;
    for (int i = 0; i < image.width * image.height; ++i) {
        const auto value = static_cast<std::uint8_t>(i * i / 7);
        image.pixels.insert(image.pixels.end(), {value, static_cast<std::uint8_t>(i), 7, 255});
    }
    const std::vector<std::uint8_t> decoded =
        Decode(LosslessWebp(image), image.width, image.height);
    ASSERT_EQ(decoded.size(), image.pixels.size());
    const std::size_t row = static_cast<std::size_t>(image.width) * 4;
    for (std::size_t i = 0; i < decoded.size(); ++i) {
        const std::size_t mirrored = (36 - i / row) * row + i % row;
        ASSERT_EQ(decoded[i], image.pixels[mirrored]) << i;
    }
}

TEST(LossyWebp, IsNearlyThePicture) {
    StepImage image;
    image.width = 64;
    image.height = 32;
    for (int i = 0; i < 64 * 32; ++i) {
        image.pixels.insert(image.pixels.end(), {40, 120, 200, 255});
    }
    const std::vector<std::uint8_t> decoded = Decode(LossyWebp(image, 75.0f), 64, 32);
    ASSERT_EQ(decoded.size(), image.pixels.size());
    for (std::size_t i = 0; i < decoded.size(); ++i) {
        ASSERT_LE(std::abs(int{decoded[i]} - int{image.pixels[i]}), 6) << i;
    }
}

TEST(LosslessWebp, PicturesThatCannotBeAreNone) {
    EXPECT_TRUE(LosslessWebp({}).empty());
    StepImage wide;
    wide.width = 16384;
    wide.height = 1;
    wide.pixels.resize(std::size_t{16384} * 4);
    EXPECT_TRUE(LosslessWebp(wide).empty());
}

}  // namespace
}  // namespace zelmo
