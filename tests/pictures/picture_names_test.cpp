#include "pictures/picture_names.h"

#include <gtest/gtest.h>

#include "base/text.h"
#include "pictures/step_image.h"

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
    const std::wstring name = L"008 oxide deposition";
    EXPECT_EQ(SavedImageName(3, name, L"bmp"), L"003 008 oxide deposition.bmp");
    EXPECT_EQ(SavedImageName(1000, name, L"png"), L"1000 008 oxide deposition.png");
}

TEST(SavedImageName, KeepsCharactersThatFilesCannotHold) {
    EXPECT_EQ(SavedImageName(1, L"001 a/b:c*", L"bmp"), L"001 001 a/b:c*.bmp");
}

}  // namespace
}  // namespace zelmo
