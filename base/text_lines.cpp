#include "base/text_lines.h"

#include <cstddef>

namespace zelmo {

namespace {

constexpr std::size_t longestTextLine = 1023;

/// Takes the next character of a text that has one, with CR LF as one LF.
char TakeCharacter(std::string_view& rest) {
    rest.remove_prefix(rest.starts_with("\r\n") ? 1 : 0);
    const char character = rest.front();
    rest.remove_prefix(1);
    return character;
}

}  // namespace

bool TakeTextLine(std::string_view& rest, std::string& line) {
    line.clear();
    const bool any = !rest.empty();
    bool textEnded = false;
    for (std::size_t length = 0; length < longestTextLine && !rest.empty(); ++length) {
        const char character = TakeCharacter(rest);
        textEnded = textEnded || character == '\0';
        if (!textEnded) {
            line.push_back(character);
        }
        if (character == '\n') {
            break;
        }
    }
    return any;
}

}  // namespace zelmo
