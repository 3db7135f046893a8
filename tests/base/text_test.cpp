#include "base/text.h"

#include <gtest/gtest.h>

namespace zelmo {
namespace {

TEST(Text, Utf8SurvivesTheWayThroughWideText) {
    for (const std::string text :
         {"", "plain", "caf\xC3\xA9", "\xE2\x82\xAC 5", "\xF0\x9D\x84\x9E clef"}) {
        EXPECT_EQ(Utf8FromWide(WideFromUtf8(text)), text);
    }
}

TEST(Text, WideTextHasOneCharacterPerCodePointOfTheBasicPlane) {
    EXPECT_EQ(WideFromUtf8("\xC3\xA9\xE2\x82\xAC"), (std::wstring{wchar_t{0xE9}, wchar_t{0x20AC}}));
}

TEST(Text, BytesThatAreNoUtf8SurviveToo) {
    // stray continuation, cut-off sequences, overlong forms, surrogates, beyond the last code point
    for (const std::string text : {"\x80", "a\xFFz", "\xC3", "\xE2\x82", "\xC0\xAF", "\xE0\x80\x80",
                                   "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xF8\x88\x80\x80\x80"}) {
        EXPECT_EQ(Utf8FromWide(WideFromUtf8(text)), text);
    }
}

TEST(Text, EveryPairOfBytesSurvives) {
    for (int first = 0; first < 256; ++first) {
        for (int second = 0; second < 256; ++second) {
            const std::string text{static_cast<char>(first), static_cast<char>(second)};
            ASSERT_EQ(Utf8FromWide(WideFromUtf8(text)), text) << first << " " << second;
        }
    }
}

TEST(Text, WidenedBytesAboveAsciiAreOddCharacters) {
    EXPECT_EQ(Utf8FromWide(WidenBytes("\xE4")), "\xEF\xBF\xA4");  // U+FFE4
}

TEST(Text, PathsSurviveTheWayThroughTheirText) {
    const std::filesystem::path path = PathFromText(L"folder/caf\u00E9 \u20AC.txt");
    EXPECT_EQ(PathFromText(PathText(path)), path);
    EXPECT_EQ(PathText(path), L"folder/caf\u00E9 \u20AC.txt");
}

}  // namespace
}  // namespace zelmo
