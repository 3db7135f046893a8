#pragma once

#include <cstdint>
#include <string_view>

// Two kinds of word occur in a command line. Which of the two a reader splits by decides what a tab
// does.

namespace zelmo {

/// Takes the next word off the front of `rest`, as the blank alone separates words. Empty if there
/// is none.
std::string_view TakeBlankSeparated(std::string_view& rest);

/// The same for words that any white space separates.
std::string_view TakeWord(std::string_view& rest);

/// `text` from its first character that is no white space.
std::string_view SkipWhiteSpace(std::string_view text);

/// The value of decimal digits; above the largest i32 it gives the largest.
std::int32_t WholeNumber(std::string_view digits);

/// Whether a text begins as the names of arguments do, with "-" and a letter.
bool LooksLikeArgument(std::string_view text);

bool IsAsciiDigit(char c);
bool IsAsciiLetter(char c);

}  // namespace zelmo
