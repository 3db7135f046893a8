#include "process_file/words.h"

#include <algorithm>
#include <cstddef>

namespace zelmo {

namespace {

constexpr std::string_view whiteSpace = " \t\n\v\f\r";

std::string_view TakeSeparatedBy(std::string_view separators, std::string_view& rest) {
    rest.remove_prefix(std::min(rest.find_first_not_of(separators), rest.size()));
    const std::size_t length = std::min(rest.find_first_of(separators), rest.size());
    const std::string_view word = rest.substr(0, length);
    rest.remove_prefix(length);
    return word;
}

}  // namespace

std::string_view TakeBlankSeparated(std::string_view& rest) {
    return TakeSeparatedBy(" ", rest);
}

std::string_view TakeWord(std::string_view& rest) {
    return TakeSeparatedBy(whiteSpace, rest);
}

std::string_view SkipWhiteSpace(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(whiteSpace), text.size()));
    return text;
}

bool IsAsciiDigit(char c) {
    return c >= '0' && c <= '9';
}

bool IsAsciiLetter(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

}  // namespace zelmo
