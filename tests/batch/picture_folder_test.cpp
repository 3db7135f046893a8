#include "batch/files/picture_folder.h"

#include <gtest/gtest.h>

#include "base/text.h"
#include "command_line/platform.h"
#include "pictures/picture_files.h"
#include "tests/support/temp_folder.h"

namespace zelmo {
namespace {

namespace fs = std::filesystem;

StepImage SmallImage(std::wstring name) {
    StepImage image;
    image.width = 3;
    image.height = 2;
    image.name = std::move(name);
    image.pixels.assign(24, 100);
    return image;
}

std::size_t CountFiles(const fs::path& folder) {
    return static_cast<std::size_t>(
        std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
}

class PictureFolderTest : public testing::Test {
protected:
    TempFolder temp_;
    static constexpr PictureFormat bitmap{"bmp", L"bmp", WriteBitmap};
    static constexpr PictureFormat png{"png", L"png", WritePng};

    PictureFolder folder_{temp_.Path(), bitmap};
};

TEST_F(PictureFolderTest, SavesUnderTheOrdinalAndThePicturesName) {
    EXPECT_EQ(SavePicture(folder_, 3, SmallImage(L"008 oxide deposition")), "");
    EXPECT_EQ(fs::file_size(temp_.Path() / "003 008 oxide deposition.bmp"), 24u + 54);
    EXPECT_EQ(CountFiles(temp_.Path()), 1u);
}

TEST_F(PictureFolderTest, TheBytesAreThoseOfTheBitmapWriter) {
    const StepImage image = SmallImage(L"001 a");
    ASSERT_EQ(SavePicture(folder_, 1, image), "");
    ASSERT_TRUE(WriteBitmap(image, temp_.Path() / "direct.bmp"));
    std::string bytes[2];
    for (const int i : {0, 1}) {
        const FilePointer file =
            OpenFile(temp_.Path() / (i == 0 ? "001 001 a.bmp" : "direct.bmp"), "rb");
        bytes[i].resize(1000);
        bytes[i].resize(std::fread(bytes[i].data(), 1, 1000, file.get()));
    }
    EXPECT_EQ(bytes[0].size(), 78u);
    EXPECT_EQ(bytes[0], bytes[1]);
}

TEST_F(PictureFolderTest, NeverReplacesAFile) {
    const fs::path file = temp_.Write("001 001 a.bmp", "mine");
    const std::string refusal = SavePicture(folder_, 1, SmallImage(L"001 a"));
    EXPECT_NE(refusal.find("001 001 a.bmp"), std::string::npos) << refusal;
    EXPECT_EQ(fs::file_size(file), 4u);
    EXPECT_EQ(CountFiles(temp_.Path()), 1u);
}

TEST_F(PictureFolderTest, AnEmptyPictureIsRefused) {
    StepImage image = SmallImage(L"001 a");
    image.height = 0;
    EXPECT_NE(SavePicture(folder_, 1, image).find("the picture is empty"), std::string::npos);
    EXPECT_EQ(CountFiles(temp_.Path()), 0u);
}

TEST_F(PictureFolderTest, AFolderThatIsGoneIsToldForEachPicture) {
    folder_.path = temp_.Path() / "gone";
    for (const wchar_t* name : {L"001 a", L"002 b"}) {
        const std::string refusal = SavePicture(folder_, 1, SmallImage(name));
        EXPECT_NE(refusal.find(Utf8FromWide(name) + ".bmp"), std::string::npos) << refusal;
    }
    fs::create_directory(folder_.path);
    EXPECT_EQ(SavePicture(folder_, 3, SmallImage(L"003 c")), "");
}

TEST_F(PictureFolderTest, PreparingMakesTheFolderAndLeavesItEmpty) {
    folder_.path = temp_.Path() / "a" / "b";
    EXPECT_EQ(PreparePictureFolder(folder_, {L"001 001 a.bmp", L"002 002 b.bmp"}), "");
    EXPECT_TRUE(fs::is_directory(folder_.path));
    EXPECT_EQ(CountFiles(folder_.path), 0u);
}

TEST_F(PictureFolderTest, PreparingRefusesAnyPictureThatIsThereAlready) {
    temp_.Write("002 002 b.bmp", "mine");
    EXPECT_EQ(PreparePictureFolder(folder_, {L"001 001 a.bmp", L"002 002 c.bmp"}), "");
    EXPECT_EQ(PreparePictureFolder({folder_.path, png}, {L"002 002 b.png"}), "");
    const std::string refusal = PreparePictureFolder(folder_, {L"001 001 a.bmp", L"002 002 b.bmp"});
    EXPECT_NE(refusal.find("002 002 b.bmp"), std::string::npos) << refusal;
    EXPECT_EQ(CountFiles(temp_.Path()), 1u);
}

TEST_F(PictureFolderTest, PreparingRefusesAFolderThatCannotBeMade) {
    folder_.path = temp_.Write("taken", "mine");
    const std::string refusal = PreparePictureFolder(folder_, {L"001 001 a.bmp"});
    EXPECT_NE(refusal.find("taken cannot be used: "), std::string::npos) << refusal;
}

TEST(CanNameFile, KnowsTheSeparators) {
    EXPECT_TRUE(CanNameFile(L"001 001 \u00E9 (1).png"));
    EXPECT_FALSE(CanNameFile(L"001 a/b.png"));
    EXPECT_FALSE(CanNameFile(std::wstring(L"a\0b", 3)));
}

}  // namespace
}  // namespace zelmo
