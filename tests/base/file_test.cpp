#include "base/file.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "base/text.h"
#include "base/text_lines.h"
#include "tests/support/temp_folder.h"

namespace zelmo {
namespace {

/// The lines of a file with these bytes, which are those of the bytes as a text.
std::vector<std::string> LinesOf(std::string_view bytes) {
    const TempFolder folder;
    const FilePointer file = OpenFile(folder.Write("lines.txt", bytes), "rb");
    std::vector<std::string> lines;
    for (std::string line; ReadTextLine(file.get(), line);) {
        lines.push_back(line);
    }
    std::vector<std::string> ofText;
    for (std::string line; TakeTextLine(bytes, line);) {
        ofText.push_back(line);
    }
    EXPECT_EQ(ofText, lines);
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

TEST(ReadTextLine, AndTakeTextLineAgreeOnBytesOfAllKinds) {
    std::minstd_rand random(7);
    for (int round = 0; round < 200; ++round) {
        std::string bytes;
        for (unsigned i = random() % 3000; i > 0; --i) {
            constexpr char alphabet[] = {'a', 'b', '\r', '\n', '\0', '#'};
            bytes.push_back(alphabet[random() % (round % 2 == 0 ? 2 : sizeof(alphabet))]);
        }
        LinesOf(bytes);
    }
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
