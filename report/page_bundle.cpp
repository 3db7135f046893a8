#include "report/page_bundle.h"

#include <fmt/format.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <string_view>
#include <system_error>

#include "base/file.h"
#include "base/text.h"

namespace zelmo {

namespace {

constexpr const char* wayOut =
    "`./run --pages` of the project's sources builds it, and --assets DIR names its folder";

/// The text of a file; the reason if it cannot be read.
std::string ReadText(const std::filesystem::path& path, std::string& text) {
    const FilePointer file = OpenFile(path, "rb");
    if (!file) {
        return std::generic_category().message(errno);
    }
    std::array<char, 1 << 16> buffer{};
    while (const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), file.get())) {
        text.append(buffer.data(), count);
    }
    if (std::ferror(file.get()) != 0) {
        return std::generic_category().message(errno);
    }
    return text.empty() ? "it is empty" : "";
}

/// What a text must not have to stand in an element of HTML and to be what its digest is made of;
/// an empty text if it has nothing of it.
std::string_view WhatCannotStand(std::string_view text) {
    std::string lower(text);
    for (char& character : lower) {
        character = character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a')
                                                         : character;
    }
    using namespace std::string_view_literals;
    for (const std::string_view piece : {"</script"sv, "</style"sv, "<!--"sv, "\r"sv, "\0"sv}) {
        if (lower.find(piece) != std::string::npos) {
            return piece == "\r" ? "a carriage return" : piece == "\0"sv ? "a NUL byte" : piece;
        }
    }
    return {};
}

std::string TakeFile(const std::filesystem::path& path, std::string& text) {
    text.clear();
    std::string reason = ReadText(path, text);
    if (const std::string_view piece = WhatCannotStand(text); reason.empty() && !piece.empty()) {
        reason = fmt::format("it holds {}, which cannot stand in a page", piece);
    }
    if (reason.empty()) {
        return {};
    }
    return fmt::format("no page can be made: the page's own file {} cannot be used: {}; {}",
                       Utf8FromWide(PathText(path)), reason, wayOut);
}

}  // namespace

std::string ReadPageBundle(const std::filesystem::path& script, const std::filesystem::path& style,
                           PageBundle& bundle) {
    std::string reason = TakeFile(script, bundle.script);
    return reason.empty() ? TakeFile(style, bundle.style) : reason;
}

}  // namespace zelmo
