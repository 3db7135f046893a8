#include "process_file/words.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <random>
#include <string>
#include <vector>

namespace zelmo {
namespace {

std::vector<std::string> AllWords(std::string_view text,
                                  std::string_view (*take)(std::string_view&)) {
    std::vector<std::string> words;
    for (auto word = take(text); !word.empty(); word = take(text)) {
        words.emplace_back(word);
    }
    return words;
}

/// Words as the C library's token function and formatted input split them.
std::vector<std::string> PlainBlankSeparated(std::string text) {
    std::vector<std::string> words;
    for (char* word = std::strtok(text.data(), " "); word; word = std::strtok(nullptr, " ")) {
        words.emplace_back(word);
    }
    return words;
}

std::vector<std::string> PlainWords(const std::string& text) {
    std::vector<std::string> words;
    char word[1024];
    int length = 0;
    for (std::size_t at = 0; std::sscanf(text.c_str() + at, "%1023s%n", word, &length) == 1;) {
        words.emplace_back(word);
        at += static_cast<std::size_t>(length);
    }
    return words;
}

TEST(WordsTest, TabsSeparateWordsInOneOfTheTwoWays) {
    const std::string_view text = " ab\tc  d ";
    EXPECT_EQ(AllWords(text, TakeBlankSeparated), (std::vector<std::string>{"ab\tc", "d"}));
    EXPECT_EQ(AllWords(text, TakeWord), (std::vector<std::string>{"ab", "c", "d"}));
}

TEST(WordsTest, RandomLinesSplitAsTheCLibrarySplitsThem) {
    constexpr std::string_view alphabet = "  \t\v\fab-\xe9";
    std::mt19937 random(4711);
    for (int round = 0; round < 2000; ++round) {
        std::string text(random() % 40, ' ');
        for (char& c : text) {
            c = alphabet[random() % alphabet.size()];
        }
        EXPECT_EQ(AllWords(text, TakeBlankSeparated), PlainBlankSeparated(text)) << text;
        EXPECT_EQ(AllWords(text, TakeWord), PlainWords(text)) << text;
    }
}

TEST(WordsTest, LettersAndDigitsAreThoseOfAscii) {
    int letters = 0;
    int digits = 0;
    for (int c = 0; c < 256; ++c) {
        letters += IsAsciiLetter(static_cast<char>(c)) ? 1 : 0;
        digits += IsAsciiDigit(static_cast<char>(c)) ? 1 : 0;
    }
    EXPECT_EQ(letters, 52);
    EXPECT_EQ(digits, 10);
    for (const char c : {'A', 'Z', 'a', 'z'}) {
        EXPECT_TRUE(IsAsciiLetter(c));
    }
    EXPECT_TRUE(IsAsciiDigit('0') && IsAsciiDigit('9'));
}

}  // namespace
}  // namespace zelmo
