#include "pictures/saved_images.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "base/file.h"
#include "base/text.h"
#include "tests/support/temp_folder.h"

namespace zelmo {
namespace {

std::tm March1st2024() {
    std::tm time{};
    time.tm_year = 124;
    time.tm_mon = 2;
    time.tm_mday = 1;
    time.tm_hour = 14;
    time.tm_min = 5;
    time.tm_sec = 9;
    return time;
}

std::wstring FolderName(const wchar_t* processFile) {
    return PathText(MakeOutputFolderName(PathFromText(processFile), March1st2024()));
}

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

TEST(OutputFolderName, IsTheProcessFileWithTheTimeInPlaceOfItsExtension) {
    EXPECT_EQ(FolderName(L"C:\\work\\flow.txt"), L"C:\\work\\flow 2024-03-01 14-05-09");
    EXPECT_EQ(FolderName(L"/data/flow.v2.txt"), L"/data/flow.v2 2024-03-01 14-05-09");
}

TEST(OutputFolderName, IsCutAtTheLastDotOfTheWholePath) {
    EXPECT_EQ(FolderName(L"/data.d/flow"), L"/data 2024-03-01 14-05-09");
    EXPECT_EQ(FolderName(L"C:\\work.d\\flow"), L"C:\\work 2024-03-01 14-05-09");
}

TEST(OutputFolderName, KeepsAPathWithoutADotWhole) {
    EXPECT_EQ(FolderName(L"/data/flow"), L"/data/flow 2024-03-01 14-05-09");
}

TEST(OutputFolderName, KeepsCharactersBeyondAscii) {
    EXPECT_EQ(FolderName(L"/w/\u00E9\u20AC.txt"), L"/w/\u00E9\u20AC 2024-03-01 14-05-09");
}

TEST(OutputFolderName, TakesThePresentLocalTime) {
    const auto local = [](std::time_t time) {
        std::wstring text(80, L'\0');
        text.resize(std::wcsftime(text.data(), text.size(), L"flow %Y-%m-%d %H-%M-%S",
                                  std::localtime(&time)));
        return text;
    };
    const std::time_t before = std::time(nullptr);
    const std::wstring name = PathText(MakeOutputFolderName("flow.txt"));
    const std::time_t after = std::time(nullptr);
    bool found = false;
    for (std::time_t time = before; time <= after; ++time) {
        found = found || name == local(time);
    }
    EXPECT_TRUE(found) << Utf8FromWide(name);
}

TEST(StepImageName, StartsWithTheNumberInThreeDigits) {
    EXPECT_EQ(StepImageName(1, "Substrate"), L"001 Substrate");
    EXPECT_EQ(StepImageName(1234, ""), L"1234 ");
}

TEST(StepImageName, WidensTheDescriptionBySignExtension) {
    EXPECT_EQ(StepImageName(7, "\xE4"), (std::wstring(L"007 ") + wchar_t{0xFFE4}));
}

TEST(SavedImageName, HasItsOwnNumberAndThePicturesNumber) {
    StepImage image;
    image.name = L"008 oxide deposition";
    EXPECT_EQ(SavedImageName(3, image, L"bmp"), L"003 008 oxide deposition.bmp");
    EXPECT_EQ(SavedImageName(1000, image, L"png"), L"1000 008 oxide deposition.png");
}

TEST(SavedImageName, KeepsCharactersThatFilesCannotHold) {
    StepImage image;
    image.name = L"001 a/b:c*";
    EXPECT_EQ(SavedImageName(1, image, L"bmp"), L"001 001 a/b:c*.bmp");
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

TEST(WriteBitmap, TheLowerFormNoticesAFailedWrite) {
    const TempFolder folder;
    const FilePointer readOnly = OpenFile(folder.Write("a.bmp", "x"), "rb");
    EXPECT_FALSE(WriteBitmap(MakeImage(2, 2), readOnly.get()));
}

}  // namespace
}  // namespace zelmo
