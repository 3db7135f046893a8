#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace zelmo {

/// Widens each byte by sign extension to 16 bits: ASCII stays as it is, 0x80 becomes 0xFF80.
std::wstring WidenBytes(std::string_view bytes);

/// UTF-8 of a wide text, and back. Bytes that are no UTF-8 travel as lone surrogates
/// (0xDC80 to 0xDCFF), so that any file name survives both ways.
std::string Utf8FromWide(std::wstring_view text);
std::wstring WideFromUtf8(std::string_view text);

/// A path as text for the console, and a path from such a text.
std::wstring PathText(const std::filesystem::path& path);
std::filesystem::path PathFromText(std::wstring_view text);

}  // namespace zelmo
