#include <gtest/gtest.h>
#include <png.h>

#include "base/file.h"
#include "pictures/picture_files.h"
#include "tests/support/temp_folder.h"

namespace zelmo {
namespace {

TEST(WritePng, TurnsThePictureTheRightWayUpAndLeavesItsAlphaOut) {
    const TempFolder folder;
    StepImage image;
    image.width = 2;
    image.height = 2;
    // blue, green, red, alpha; the bottom row first
    image.pixels = {1, 2, 3, 0, 4, 5, 6, 10, 7, 8, 9, 128, 10, 11, 12, 255};
    FilePointer file = OpenFile(folder.Path() / "a.png", "wb+");
    std::string reason;
    ASSERT_TRUE(WritePng(image, file.get(), reason)) << reason;
    std::rewind(file.get());

    png_image read{};
    read.version = PNG_IMAGE_VERSION;
    ASSERT_NE(png_image_begin_read_from_stdio(&read, file.get()), 0) << read.message;
    EXPECT_EQ(read.width, 2u);
    EXPECT_EQ(read.height, 2u);
    EXPECT_EQ(read.format, static_cast<png_uint_32>(PNG_FORMAT_RGB));
    std::vector<std::uint8_t> pixels(PNG_IMAGE_SIZE(read));
    ASSERT_NE(png_image_finish_read(&read, nullptr, pixels.data(), 0, nullptr), 0);
    EXPECT_EQ(pixels, (std::vector<std::uint8_t>{9, 8, 7, 12, 11, 10, 3, 2, 1, 6, 5, 4}));
}

TEST(WritePng, KeepsTheAlphaOfATransparentPicture) {
    const TempFolder folder;
    StepImage image;
    image.width = 1;
    image.height = 2;
    image.pixels = {1, 2, 3, 0, 7, 8, 9, 128};
    image.isTransparent = true;
    FilePointer file = OpenFile(folder.Path() / "a.png", "wb+");
    std::string reason;
    ASSERT_TRUE(WritePng(image, file.get(), reason)) << reason;
    std::rewind(file.get());

    png_image read{};
    read.version = PNG_IMAGE_VERSION;
    ASSERT_NE(png_image_begin_read_from_stdio(&read, file.get()), 0) << read.message;
    EXPECT_EQ(read.format, static_cast<png_uint_32>(PNG_FORMAT_RGBA));
    std::vector<std::uint8_t> pixels(PNG_IMAGE_SIZE(read));
    ASSERT_NE(png_image_finish_read(&read, nullptr, pixels.data(), 0, nullptr), 0);
    EXPECT_EQ(pixels, (std::vector<std::uint8_t>{9, 8, 7, 128, 3, 2, 1, 0}));
}

}  // namespace
}  // namespace zelmo
