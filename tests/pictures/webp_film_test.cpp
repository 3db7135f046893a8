#include "pictures/webp_film.h"

#include <gtest/gtest.h>
#include <webp/demux.h>

#include <cstdlib>
#include <memory>
#include <vector>

#include "pictures/webp.h"

namespace zelmo {
namespace {

/// A picture whose left part is dark, as wide as `dark` says.
StepImage Picture(std::int32_t width, std::int32_t height, std::int32_t dark) {
    StepImage image;
    image.width = width;
    image.height = height;
    for (std::int32_t i = 0; i < width * height; ++i) {
        const std::uint8_t value = i % width < dark ? 30 : 220;
        image.pixels.insert(image.pixels.end(), {value, value, value, 0});
    }
    return image;
}

struct Frame {
    std::vector<std::uint8_t> pixels;  ///< red, green, blue, alpha, from the upper left corner
    int end = 0;                       ///< milliseconds
};

struct Film {
    WebPAnimInfo info{};
    std::vector<Frame> frames;
};

/// By the library's own decoder.
Film Decode(const std::vector<std::uint8_t>& bytes) {
    const WebPData data{bytes.data(), bytes.size()};
    const std::unique_ptr<WebPAnimDecoder, void (*)(WebPAnimDecoder*)> decoder(
        WebPAnimDecoderNew(&data, nullptr), WebPAnimDecoderDelete);
    Film film;
    if (decoder == nullptr || WebPAnimDecoderGetInfo(decoder.get(), &film.info) == 0) {
        return film;
    }
    while (WebPAnimDecoderHasMoreFrames(decoder.get()) != 0) {
        std::uint8_t* pixels = nullptr;
        Frame frame;
        if (WebPAnimDecoderGetNext(decoder.get(), &pixels, &frame.end) == 0) {
            break;
        }
        frame.pixels.assign(
            pixels, pixels + std::size_t{4} * film.info.canvas_width * film.info.canvas_height);
        film.frames.push_back(std::move(frame));
    }
    return film;
}

int RedAt(const Frame& frame, int width, int x, int y) {
    return frame.pixels.at(static_cast<std::size_t>(y * width + x) * 4);
}

TEST(WebpFilm, ShowsEachPictureForItsTime) {
    const Film film = Decode(WebpFilm(
        64, 48, 5,
        [](std::size_t i) { return Picture(64, 48, 10 * static_cast<std::int32_t>(i + 1)); },
        {250, 3}));
    EXPECT_EQ(film.info.canvas_width, 64u);
    EXPECT_EQ(film.info.canvas_height, 48u);
    EXPECT_EQ(film.info.loop_count, 3u);
    ASSERT_EQ(film.frames.size(), 5u);
    for (int i = 0; i < 5; ++i) {
        const Frame& frame = film.frames[static_cast<std::size_t>(i)];
        EXPECT_EQ(frame.end, 250 * (i + 1));
        EXPECT_NEAR(RedAt(frame, 64, 10 * (i + 1) - 4, 20), 30, 8);
        EXPECT_NEAR(RedAt(frame, 64, 10 * (i + 1) + 4, 20), 220, 8);
        EXPECT_EQ(frame.pixels[3], 255);
    }
}

TEST(WebpFilm, EqualPicturesTakeTheirTime) {
    const Film film = Decode(WebpFilm(
        20, 10, 3, [](std::size_t i) { return Picture(20, 10, i < 2 ? 9 : 12); }, {100, 0}));
    ASSERT_FALSE(film.frames.empty());
    EXPECT_EQ(film.info.loop_count, 0u);
    EXPECT_EQ(film.frames.front().end, 200);
    EXPECT_EQ(film.frames.back().end, 300);
}

TEST(WebpFilm, OfOnePictureIsAStill) {
    const Film film =
        Decode(WebpFilm(20, 10, 3, [](std::size_t) { return Picture(20, 10, 9); }, {100, 0}));
    ASSERT_EQ(film.frames.size(), 1u);
    EXPECT_NEAR(RedAt(film.frames[0], 20, 3, 5), 30, 8);
}

TEST(WebpFilm, SmallerPicturesStandInTheMiddleOnWhite) {
    const Film film = Decode(WebpFilm(
        40, 30, 2, [](std::size_t i) { return i == 0 ? Picture(40, 30, 40) : Picture(20, 10, 20); },
        {100, 0}));
    ASSERT_EQ(film.frames.size(), 2u);
    EXPECT_NEAR(RedAt(film.frames[1], 40, 20, 15), 30, 8);
    EXPECT_NEAR(RedAt(film.frames[1], 40, 3, 15), 255, 8);
    EXPECT_NEAR(RedAt(film.frames[1], 40, 20, 3), 255, 8);
}

TEST(WebpFilm, IsNoneWithoutPicturesOrOfTooLargeOnes) {
    const auto none = [](std::size_t) { return StepImage(); };
    EXPECT_TRUE(WebpFilm(10, 10, 0, none, {}).empty());
    EXPECT_TRUE(WebpFilm(16384, 10, 1, none, {}).empty());
    EXPECT_TRUE(WebpFilm(10, 0, 1, none, {}).empty());
}

TEST(ImageOfWebp, IsThePictureThatWasWritten) {
    StepImage image = Picture(31, 17, 11);
    for (std::size_t i = 0; i < image.pixels.size(); ++i) {
        image.pixels[i] = static_cast<std::uint8_t>(i % 4 == 3 ? 255 : i * 7 + image.pixels[i]);
    }
    const StepImage read = ImageOfWebp(LosslessWebp(image));
    EXPECT_EQ(read.width, 31);
    EXPECT_EQ(read.height, 17);
    EXPECT_FALSE(read.isTransparent);
    EXPECT_EQ(read.pixels, image.pixels);
}

TEST(ImageOfWebp, KeepsWhatIsTransparent) {
    StepImage image = Picture(8, 8, 4);
    image.isTransparent = true;
    for (std::size_t i = 3; i < image.pixels.size(); i += 4) {
        image.pixels[i] = static_cast<std::uint8_t>(100 + i % 100);
    }
    const StepImage read = ImageOfWebp(LosslessWebp(image));
    EXPECT_TRUE(read.isTransparent);
    EXPECT_EQ(read.pixels, image.pixels);
}

}  // namespace
}  // namespace zelmo
