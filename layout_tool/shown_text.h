#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace zelmo {

/// A text of a file as UTF-8 that can be shown: bytes that are none, and control characters, become
/// the replacement character.
std::string ShownText(std::string_view bytes);

/// How many characters a text in UTF-8 has.
std::size_t CharacterCount(std::string_view text);

}  // namespace zelmo
