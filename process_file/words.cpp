#include "process_file/words.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <limits>
#include <system_error>

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

std::int32_t WholeNumber(std::string_view digits) {
    std::int32_t value = 0;
    const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    return result.ec == std::errc::result_out_of_range ? std::numeric_limits<std::int32_t>::max()
                                                       : value;
}

bool LooksLikeArgument(std::string_view text) {
    return text.size() >= 2 && text[0] == '-' && IsAsciiLetter(text[1]);
}

bool IsAsciiDigit(char c) {
    return c >= '0' && c <= '9';
}

bool IsAsciiLetter(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

}  // namespace zelmo
