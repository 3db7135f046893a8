#pragma once

#include <cstdint>

namespace zelmo {

/// Why a gzip-compressed file cannot be unpacked.
enum class GzipFault : std::uint8_t {
    EndsEarly,
    Damaged,
    WrongCheckSum,
    StrayBytes,   ///< behind the compressed data stand neither more of them nor zeros
    TooLarge,     ///< it unpacks to more than UnpackedLimit
    PackedTwice,  ///< it unpacks to a gzip-compressed file
};

/// What is wrong, in words that "at byte 12" can follow.
const char* GzipFaultReason(GzipFault fault);

/// What a user can do about it, in words.
const char* GzipFaultWayOut(GzipFault fault);

/// The most bytes that a compressed layout may unpack to on a machine of so much memory: a quarter
/// of it, as a loaded layout takes about one to four times the bytes of its file.
std::uint64_t UnpackedLimit(std::uint64_t memory);

}  // namespace zelmo
