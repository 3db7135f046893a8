#include "base/file.h"

#include <gtest/gtest.h>

#include <vector>

#include "base/text.h"
#include "tests/support/temp_folder.h"

namespace zelmo {
namespace {

std::vector<std::string> LinesOf(std::string_view bytes) {
    const TempFolder folder;
    const FilePointer file = OpenFile(folder.Write("lines.txt", bytes), "rb");
    std::vector<std::string> lines;
    for (std::string line; ReadTextLine(file.get(), line);) {
        lines.push_back(line);
    }
    return lines;
}

TEST(ReadTextLine, KeepsLineFeedsAndALastLineWithoutOne) {
    EXPECT_EQ(LinesOf(""), (std::vector<std::string>{}));
    EXPECT_EQ(LinesOf("\n"), (std::vector<std::string>{"\n"}));
    EXPECT_EQ(LinesOf("a\n\nb"), (std::vector<std::string>{"a\n", "\n", "b"}));
}

TEST(ReadTextLine, TakesCarriageReturnAndLineFeedAsOneCharacter) {
    EXPECT_EQ(LinesOf("a\r\nb\rc\r"), (std::vector<std::string>{"a\n", "b\rc\r"}));
    const std::string full(1022, 'x');
    EXPECT_EQ(LinesOf(full + "\r\ny"), (std::vector<std::string>{full + "\n", "y"}));
}

TEST(ReadTextLine, CutsAfter1023Bytes) {
    const std::string full(1023, 'x');
    EXPECT_EQ(LinesOf(full + "\n"), (std::vector<std::string>{full, "\n"}));
    EXPECT_EQ(LinesOf(full + full + "y\n"), (std::vector<std::string>{full, full, "y\n"}));
}

TEST(ReadTextLine, ANulEndsTheTextButCountsInTheLine) {
    using namespace std::string_literals;
    EXPECT_EQ(LinesOf("a\0b\nc\n"s), (std::vector<std::string>{"a", "c\n"}));
    EXPECT_EQ(LinesOf("\0"s + std::string(1022, 'x') + "y"), (std::vector<std::string>{"", "y"}));
}

TEST(OpenFile, RefusesAFolder) {
    const TempFolder folder;
    EXPECT_EQ(OpenFile(folder.Path(), "rb"), nullptr);
}

TEST(OpenFile, TakesNamesBeyondAscii) {
    const TempFolder folder;
    const std::filesystem::path path = folder.Path() / PathFromText(L"\u00E9\u20AC.txt");
    ASSERT_NE(OpenFile(path, "wb"), nullptr);
    EXPECT_TRUE(std::filesystem::exists(path));
    EXPECT_NE(OpenFile(path, "rb"), nullptr);
}

TEST(CloseWritten, TellsThatAllWasWritten) {
    const TempFolder folder;
    FilePointer file = OpenFile(folder.Path() / "new", "wb");
    std::fputs("abc", file.get());
    EXPECT_TRUE(CloseWritten(std::move(file)));
    EXPECT_EQ(std::filesystem::file_size(folder.Path() / "new"), 3u);
}

}  // namespace
}  // namespace zelmo
