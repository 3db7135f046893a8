#include "layout_tool/shown_text.h"

#include <algorithm>

#include "base/text.h"

namespace zelmo {

namespace {

constexpr wchar_t replacement = 0xFFFD;

/// Control characters, and the surrogates that stand for bytes that are no UTF-8.
bool IsUnreadable(wchar_t character) {
    const auto code = static_cast<char32_t>(character);
    return code < 0x20 || (code >= 0x7F && code < 0xA0) || (code >= 0xDC80 && code <= 0xDCFF) ||
           code == 0xFFFE || code == 0xFFFF;
}

}  // namespace

std::string ShownText(std::string_view bytes) {
    const bool plain = std::all_of(bytes.begin(), bytes.end(),
                                   [](char byte) { return byte >= 0x20 && byte < 0x7F; });
    if (plain) {
        return std::string(bytes);
    }
    std::wstring text = WideFromUtf8(bytes);
    for (std::size_t i = 0; i < text.size(); ++i) {
        // The second half of a pair is no byte.
        const bool isPaired =
            sizeof(wchar_t) == 2 && i > 0 && text[i - 1] >= 0xD800 && text[i - 1] <= 0xDBFF;
        if (!isPaired && IsUnreadable(text[i])) {
            text[i] = replacement;
        }
    }
    return Utf8FromWide(text);
}

std::size_t CharacterCount(std::string_view text) {
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char byte) {
        return (static_cast<unsigned char>(byte) & 0xC0u) != 0x80u;
    }));
}

}  // namespace zelmo
