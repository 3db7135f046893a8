#include "gds/file_look.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>
#include <vector>

#include "gds/layout_bytes.h"
#include "gds/stream_records.h"

namespace zelmo {

namespace {

using namespace std::string_view_literals;

struct FileMark {
    std::string_view bytes;
    FileKind kind;
};

constexpr FileMark marks[] = {
    {"\x1F\x8B"sv, FileKind::Gzip},
    {"BZh"sv, FileKind::Bzip2},
    {"\xFD"
     "7zXZ\0"sv,
     FileKind::Xz},
    {"\x28\xB5\x2F\xFD"sv, FileKind::Zstandard},
    {"PK\3\4"sv, FileKind::Zip},
    {"%SEMI-OASIS\r\n"sv, FileKind::Oasis},
    {"\x89PNG\r\n\x1A\n"sv, FileKind::Png},
    {"\xFF\xD8\xFF"sv, FileKind::Jpeg},
    {"II*\0"sv, FileKind::Tiff},
    {"MM\0*"sv, FileKind::Tiff},
    {"%PDF-"sv, FileKind::Pdf},
    {"\x7F"
     "ELF"sv,
     FileKind::Program},
};

/// The two letters of a bitmap begin many texts, too; its size and four zeros follow.
bool IsBitmap(std::string_view bytes) {
    constexpr std::size_t reserved = 6;
    return bytes.starts_with("BM") &&
           bytes.substr(std::min(reserved, bytes.size()), 4) == "\0\0\0\0"sv;
}

/// The first record of a stream file is its HEADER, of two bytes.
bool IsStream(std::span<const std::uint8_t> bytes) {
    constexpr std::uint16_t headerLength = 6;
    constexpr std::uint16_t headerCode = 0x0002;
    return bytes.size() >= recordHeadSize && StreamU16(bytes.data()) == headerLength &&
           StreamU16(bytes.data() + 2) == headerCode;
}

bool IsTextByte(char character) {
    const auto byte = static_cast<unsigned char>(character);
    return byte >= 0x20 ? byte != 0x7F : (byte >= '\t' && byte <= '\r');
}

/// Letters of two bytes each have a mark in front of them, others no control characters.
bool IsText(std::string_view bytes) {
    return bytes.starts_with("\xFF\xFE"sv) || bytes.starts_with("\xFE\xFF"sv) ||
           std::all_of(bytes.begin(), bytes.end(), IsTextByte);
}

std::string FirstWord(std::string_view text) {
    while (!text.empty()) {
        const std::size_t end = std::min(text.find_first_of("\r\n"), text.size());
        std::string_view line = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        line.remove_prefix(std::min(line.find_first_not_of(" \t\f\v"), line.size()));
        if (!line.empty() && line[0] != '#') {
            return std::string(line.substr(0, line.find_first_of(" \t\f\v")));
        }
    }
    return {};
}

/// What it is, in words, and in front of them what it is if it is compressed.
const char* KindText(FileKind kind) {
    // clang-format off
    switch (kind) {
        case FileKind::Unreadable: return "not readable";
        case FileKind::Empty: return "empty";
        case FileKind::Stream: return "GDSII stream file";
        case FileKind::Gzip: return "file";
        case FileKind::Bzip2: return "bzip2-compressed file";
        case FileKind::Xz: return "xz-compressed file";
        case FileKind::Zstandard: return "zstd-compressed file";
        case FileKind::Zip: return "ZIP archive";
        case FileKind::Oasis: return "OASIS layout";
        case FileKind::Png: return "PNG picture";
        case FileKind::Jpeg: return "JPEG picture";
        case FileKind::Bmp: return "BMP picture";
        case FileKind::Tiff: return "TIFF picture";
        case FileKind::Pdf: return "PDF document";
        case FileKind::Program: return "program";
        case FileKind::Text: return "text";
        case FileKind::Other: return "no GDSII file";
    }
    // clang-format on
    std::abort();
}

}  // namespace

FileLook LookAtBytes(std::span<const std::uint8_t> bytes) {
    const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    const auto* const mark =
        std::find_if(std::begin(marks), std::end(marks),
                     [&](const FileMark& known) { return text.starts_with(known.bytes); });
    if (bytes.empty()) {
        return {FileKind::Empty, false, {}};
    }
    if (mark != std::end(marks)) {
        return {mark->kind, mark->kind == FileKind::Gzip, {}};
    }
    if (IsStream(bytes)) {
        return {FileKind::Stream, false, {}};
    }
    if (IsBitmap(text)) {
        return {FileKind::Bmp, false, {}};
    }
    if (IsText(text)) {
        return {FileKind::Text, false, FirstWord(text)};
    }
    return {text.starts_with("MZ") ? FileKind::Program : FileKind::Other, false, {}};
}

FileLook LookAtFile(const std::filesystem::path& path) {
    LayoutBytes file(path, lookedAt);
    std::vector<std::uint8_t> bytes(lookedAt);
    bytes.resize(file.Read(bytes.data(), bytes.size()));
    if (!file.IsPacked()) {
        return bytes.empty() && file.Failed() ? FileLook{} : LookAtBytes(bytes);
    }
    FileLook look =
        bytes.empty() && file.Failed() ? FileLook{FileKind::Gzip, true, {}} : LookAtBytes(bytes);
    look.packed = true;
    return look;
}

std::string LookText(const FileLook& look) {
    const std::string text = KindText(look.kind);
    const bool isState = look.kind == FileKind::Unreadable || look.kind == FileKind::Empty ||
                         look.kind == FileKind::Other;
    if (isState) {
        return look.packed ? "a gzip-compressed file that is " + text : text;
    }
    if (look.packed) {
        return "a gzip-compressed " + text;
    }
    return (look.kind == FileKind::Oasis ? "an " : "a ") + text;
}

}  // namespace zelmo
