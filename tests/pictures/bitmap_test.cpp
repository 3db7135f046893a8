#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "base/file.h"
#include "pictures/picture_files.h"
#include "tests/support/temp_folder.h"

namespace zelmo {
namespace {

/// A picture whose bytes are all different from their neighbours.
StepImage MakeImage(std::int32_t width, std::int32_t height) {
    StepImage image;
    image.width = width;
    image.height = height;
    image.name = L"001 Substrate";
    image.pixels.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4);
    for (std::size_t i = 0; i < image.pixels.size(); ++i) {
        image.pixels[i] = static_cast<std::uint8_t>(i * 37 + i / 251);
    }
    return image;
}

std::vector<std::uint8_t> ReadBytes(const std::filesystem::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

TEST(WriteBitmap, WritesTheHeadersByteByByte) {
    const TempFolder folder;
    const std::filesystem::path path = folder.Path() / "a.bmp";
    ASSERT_TRUE(WriteBitmap(MakeImage(258, 3), path));
    const std::vector<std::uint8_t> bytes = ReadBytes(path);
    ASSERT_EQ(bytes.size(), 258u * 3 * 4 + 54);
    const std::vector<std::uint8_t> header(bytes.begin(), bytes.begin() + 54);
    // 258 * 3 * 4 + 54 = 3150 = 0x0C4E
    EXPECT_EQ(header, (std::vector<std::uint8_t>{
                          0x42, 0x4D, 0x4E, 0x0C, 0, 0, 0, 0, 0, 0, 54, 0, 0, 0,         //
                          40,   0,    0,    0,    2, 1, 0, 0, 3, 0, 0,  0, 1, 0, 32, 0,  //
                          0,    0,    0,    0,    0, 0, 0, 0, 0, 0, 0,  0, 0, 0, 0,  0,
                          0,    0,    0,    0,    0, 0, 0, 0}));
}

TEST(WriteBitmap, WritesThePixelsAsTheyStand) {
    const TempFolder folder;
    const std::filesystem::path path = folder.Path() / "a.bmp";
    const StepImage image = MakeImage(7, 5);
    ASSERT_TRUE(WriteBitmap(image, path));
    const std::vector<std::uint8_t> bytes = ReadBytes(path);
    EXPECT_EQ(std::vector<std::uint8_t>(bytes.begin() + 54, bytes.end()), image.pixels);
}

TEST(WriteBitmap, AFullPictureHas8294454Bytes) {
    const TempFolder folder;
    const std::filesystem::path path = folder.Path() / "a.bmp";
    ASSERT_TRUE(WriteBitmap(MakeImage(1920, 1080), path));
    EXPECT_EQ(std::filesystem::file_size(path), 8294454u);
}

TEST(WriteBitmap, PicturesOfOtherHeightsGiveFilesOfOtherSizes) {
    const TempFolder folder;
    ASSERT_TRUE(WriteBitmap(MakeImage(1920, 10), folder.Path() / "a.bmp"));
    ASSERT_TRUE(WriteBitmap(MakeImage(1920, 11), folder.Path() / "b.bmp"));
    EXPECT_EQ(std::filesystem::file_size(folder.Path() / "a.bmp"), 1920u * 10 * 4 + 54);
    EXPECT_EQ(std::filesystem::file_size(folder.Path() / "b.bmp"), 1920u * 11 * 4 + 54);
}

TEST(WriteBitmap, RefusesAnEmptyPictureAndMakesNoFile) {
    const TempFolder folder;
    const std::filesystem::path path = folder.Path() / "a.bmp";
    StepImage image = MakeImage(2, 2);
    for (const auto& [width, height] : {std::pair{0, 2}, {2, 0}, {-1, 2}, {2, -1}}) {
        image.width = width;
        image.height = height;
        EXPECT_FALSE(WriteBitmap(image, path));
        EXPECT_FALSE(std::filesystem::exists(path));
    }
}

TEST(WriteBitmap, RefusesAPathThatCannotBeOpened) {
    const TempFolder folder;
    EXPECT_FALSE(WriteBitmap(MakeImage(2, 2), folder.Path() / "absent" / "a.bmp"));
    EXPECT_FALSE(WriteBitmap(MakeImage(2, 2), folder.Path()));
}

TEST(WriteBitmap, ReplacesWhatTheFileHeldBefore) {
    const TempFolder folder;
    const std::filesystem::path path = folder.Write("a.bmp", std::string(1000, 'x'));
    ASSERT_TRUE(WriteBitmap(MakeImage(2, 2), path));
    EXPECT_EQ(std::filesystem::file_size(path), 2u * 2 * 4 + 54);
}

}  // namespace
}  // namespace zelmo
