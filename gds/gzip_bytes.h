#pragma once

#include <zlib.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>

#include "base/file.h"
#include "gds/gzip_fault.h"

namespace zelmo {

/// What a gzip-compressed file begins with: its mark, and the only method there is.
constexpr std::array<std::uint8_t, 3> gzipMark = {0x1F, 0x8B, 8};

/// Unpacks a gzip-compressed file piece by piece. It may consist of several members, one behind the
/// other, and zeros may follow them.
class GzipBytes {
public:
    /// The file stands behind its mark. `limit` is the most that it may unpack to, in bytes. Throws
    /// std::bad_alloc.
    GzipBytes(FilePointer file, std::uint64_t limit);

    /// Unpacks the next bytes: `count` of them unless the end or a fault comes first.
    std::size_t Read(std::uint8_t* bytes, std::size_t count);

    /// Whether the system could not read the file to its end.
    bool Unreadable() const { return unreadable_; }
    std::optional<GzipFault> Fault() const { return fault_; }
    /// The byte of the compressed file where the fault came to light.
    std::uint64_t FaultOffset() const { return faultOffset_; }

private:
    struct StreamCloser {
        void operator()(z_stream* stream) const {
            inflateEnd(stream);
            delete stream;
        }
    };

    bool IsAtEnd() const { return ended_ || unreadable_ || fault_; }
    bool HasInput();
    void EndInput();
    void BeginNextMember();
    std::size_t Inflate(std::uint8_t* bytes, std::size_t count);
    void TakeResult(int result);
    void LookForMark(std::span<const std::uint8_t> unpacked);
    void Fail(GzipFault fault);

    FilePointer file_;
    std::unique_ptr<z_stream, StreamCloser> stream_;
    std::array<std::uint8_t, std::size_t{1} << 16> input_ = {};
    std::uint64_t fileOffset_ = 0;  ///< behind what was read of the file
    std::uint64_t limit_;
    std::uint64_t unpacked_ = 0;   ///< bytes so far
    std::size_t markMatches_ = 0;  ///< of the mark, at the beginning of what is unpacked
    bool betweenMembers_ = false;
    bool ended_ = false;
    bool unreadable_ = false;
    std::optional<GzipFault> fault_;
    std::uint64_t faultOffset_ = 0;
};

}  // namespace zelmo
