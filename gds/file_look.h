#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>

namespace zelmo {

/// What a file is, as far as its first bytes tell.
enum class FileKind : std::uint8_t {
    Unreadable,  ///< it cannot be opened
    Empty,
    Stream,  ///< a GDSII stream file
    Gzip,    ///< compressed, and what is inside cannot be told
    Bzip2,
    Xz,
    Zstandard,
    Zip,
    Oasis,
    Png,
    Jpeg,
    Bmp,
    Tiff,
    Pdf,
    Program,
    Text,
    Other,
};

/// What a file looks like by its first bytes.
struct FileLook {
    FileKind kind = FileKind::Unreadable;
    bool packed = false;  ///< in a gzip-compressed file
    std::string
        firstWord;  ///< of a text: of its first line that is neither blank nor begins with #

    bool operator==(const FileLook&) const = default;
};

/// Looks at the beginning of a file; of a gzip-compressed one, of what it unpacks to.
FileLook LookAtFile(const std::filesystem::path& path);

/// The same of bytes that a file begins with. As many as `lookedAt` are enough.
FileLook LookAtBytes(std::span<const std::uint8_t> bytes);
constexpr std::size_t lookedAt = 4096;

/// "a PNG picture", "a gzip-compressed text", "empty": what "the file is " can precede. Of a file
/// that cannot be opened "not readable", of one that looks like nothing known "no GDSII file".
std::string LookText(const FileLook& look);

}  // namespace zelmo
