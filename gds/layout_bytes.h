#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>

#include "base/file.h"
#include "gds/gzip_fault.h"

namespace zelmo {

class GzipBytes;

/// What keeps a compressed layout from being unpacked, and the byte of the file where.
struct UnpackingError {
    GzipFault fault = GzipFault::EndsEarly;
    std::uint64_t byte = 0;
};

/// The bytes of a layout file, from the first to the last. What begins like a gzip-compressed file
/// is unpacked as it is read.
class LayoutBytes {
public:
    /// `unpackedLimit` is the most that a compressed file may unpack to, in bytes. A file that
    /// cannot be opened has no bytes and has failed.
    LayoutBytes(const std::filesystem::path& path, std::uint64_t unpackedLimit);
    ~LayoutBytes();
    LayoutBytes(const LayoutBytes&) = delete;
    LayoutBytes& operator=(const LayoutBytes&) = delete;

    /// Reads the next bytes: `count` of them unless the end comes first, or something fails.
    std::size_t Read(std::uint8_t* bytes, std::size_t count);
    /// Passes what is left of a compressed file, for it to be checked. Others are left alone.
    void PassRest();

    /// How many bytes were read.
    std::uint64_t Count() const { return count_; }
    bool IsPacked() const { return unpacker_ != nullptr; }
    bool Failed() const;
    std::optional<UnpackingError> WhyNotUnpacked() const;

private:
    std::size_t ReadNext(std::uint8_t* bytes, std::size_t count);

    FilePointer file_;                       ///< not open where it is the unpacker's
    std::array<std::uint8_t, 3> head_ = {};  ///< first bytes of a plain file
    std::uint64_t count_ = 0;
    std::size_t headBegin_ = 0;  ///< of those that were not handed out
    std::size_t headEnd_ = 0;
    std::unique_ptr<GzipBytes> unpacker_;
};

}  // namespace zelmo
