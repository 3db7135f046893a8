#include "base/text.h"

#include <cstdint>
#include <string>
#include <type_traits>

namespace zelmo {

namespace {

constexpr char32_t firstEscape = 0xDC80;  // a byte 0x80 that is no UTF-8
constexpr char32_t lastEscape = 0xDCFF;

bool IsContinuation(unsigned char byte) {
    return (byte & 0xC0u) == 0x80u;
}

/// Decodes the code point at `position` and moves past it; a byte that starts no valid sequence
/// gives its escape.
char32_t DecodeUtf8(std::string_view text, std::size_t& position) {
    const auto byteAt = [&](std::size_t i) {
        return i < text.size() ? static_cast<unsigned char>(text[i]) : 0u;
    };
    const unsigned char first = static_cast<unsigned char>(text[position]);
    std::size_t length = 1;
    char32_t point = first;
    char32_t least = 0;
    if (first >= 0xC2 && first <= 0xDF) {
        length = 2, point = first & 0x1Fu, least = 0x80;
    } else if (first >= 0xE0 && first <= 0xEF) {
        length = 3, point = first & 0x0Fu, least = 0x800;
    } else if (first >= 0xF0 && first <= 0xF4) {
        length = 4, point = first & 0x07u, least = 0x10000;
    }
    for (std::size_t i = 1; i < length; ++i) {
        const unsigned char next = static_cast<unsigned char>(byteAt(position + i));
        if (!IsContinuation(next)) {
            length = 1;
            break;
        }
        point = (point << 6) | (next & 0x3Fu);
    }
    const bool surrogate = point >= 0xD800 && point <= 0xDFFF;
    if (first >= 0x80 && (length == 1 || point < least || surrogate || point > 0x10FFFF)) {
        ++position;
        return firstEscape + (first - 0x80u);
    }
    position += length;
    return point;
}

void AppendUtf8(std::string& text, char32_t point) {
    const auto add = [&](char32_t byte) { text.push_back(static_cast<char>(byte)); };
    if (point < 0x80) {
        add(point);
    } else if (point < 0x800) {
        add(0xC0 | (point >> 6));
        add(0x80 | (point & 0x3F));
    } else if (point < 0x10000) {
        add(0xE0 | (point >> 12));
        add(0x80 | ((point >> 6) & 0x3F));
        add(0x80 | (point & 0x3F));
    } else {
        add(0xF0 | (point >> 18));
        add(0x80 | ((point >> 12) & 0x3F));
        add(0x80 | ((point >> 6) & 0x3F));
        add(0x80 | (point & 0x3F));
    }
}

// The native texts of paths are wide on one platform and bytes on the other.
template <typename Native>
std::wstring NativeToWide(const Native& text) {
    if constexpr (std::is_same_v<Native, std::wstring>) {
        return text;
    } else {
        return WideFromUtf8(text);
    }
}

template <typename Native>
Native WideToNative(std::wstring_view text) {
    if constexpr (std::is_same_v<Native, std::wstring>) {
        return Native(text);
    } else {
        return Utf8FromWide(text);
    }
}

}  // namespace

std::wstring WidenBytes(std::string_view bytes) {
    std::wstring wide;
    wide.reserve(bytes.size());
    for (const char byte : bytes) {
        // NOLINTNEXTLINE(bugprone-signed-char-misuse): the sign is what is extended
        const auto extended = static_cast<std::int16_t>(static_cast<signed char>(byte));
        wide.push_back(static_cast<wchar_t>(static_cast<std::uint16_t>(extended)));
    }
    return wide;
}

std::string Utf8FromWide(std::wstring_view text) {
    using Unit = std::make_unsigned_t<wchar_t>;
    std::string narrow;
    narrow.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        char32_t point = static_cast<Unit>(text[i]);
        if (point >= 0xD800 && point <= 0xDBFF && i + 1 < text.size()) {
            const char32_t low = static_cast<Unit>(text[i + 1]);
            if (low >= 0xDC00 && low <= 0xDFFF) {
                point = 0x10000 + ((point - 0xD800) << 10) + (low - 0xDC00);
                ++i;
            }
        }
        if (point >= firstEscape && point <= lastEscape) {
            narrow.push_back(static_cast<char>(0x80 + (point - firstEscape)));
        } else {
            AppendUtf8(narrow, point);
        }
    }
    return narrow;
}

std::wstring WideFromUtf8(std::string_view text) {
    std::wstring wide;
    wide.reserve(text.size());
    for (std::size_t position = 0; position < text.size();) {
        const char32_t point = DecodeUtf8(text, position);
        if (sizeof(wchar_t) == 2 && point >= 0x10000) {
            wide.push_back(static_cast<wchar_t>(0xD800 + ((point - 0x10000) >> 10)));
            wide.push_back(static_cast<wchar_t>(0xDC00 + ((point - 0x10000) & 0x3FF)));
        } else {
            wide.push_back(static_cast<wchar_t>(point));
        }
    }
    return wide;
}

std::wstring PathText(const std::filesystem::path& path) {
    return NativeToWide(path.native());
}

std::filesystem::path PathFromText(std::wstring_view text) {
    return WideToNative<std::filesystem::path::string_type>(text);
}

}  // namespace zelmo
