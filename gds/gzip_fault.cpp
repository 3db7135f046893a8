#include "gds/gzip_fault.h"

#include <algorithm>
#include <cstdlib>

namespace zelmo {

const char* GzipFaultReason(GzipFault fault) {
    using enum GzipFault;
    // No default: a fault without words does not compile.
    // clang-format off
    switch (fault) {
        case EndsEarly: return "the gzip-compressed file ends too early";
        case Damaged: return "the gzip-compressed file is damaged";
        case WrongCheckSum: return "the gzip-compressed file does not match its check sum";
        case StrayBytes: return "the gzip-compressed file goes on with something else";
        case TooLarge: return "the gzip-compressed file unpacks to more than a quarter of the machine's memory";
        case PackedTwice: return "the gzip-compressed file holds another gzip-compressed file";
    }
    // clang-format on
    std::abort();
}

const char* GzipFaultWayOut(GzipFault fault) {
    using enum GzipFault;
    switch (fault) {
        case EndsEarly:
        case Damaged:
        case WrongCheckSum:
            return "fetch it once more from where it came from";
        case StrayBytes:
        case TooLarge:
            return "unpack it with gzip -d and load what comes out";
        case PackedTwice:
            return "unpack it once with gzip -d";
    }
    std::abort();
}

std::uint64_t UnpackedLimit(std::uint64_t memory) {
    constexpr std::uint64_t always = std::uint64_t{1} << 28;
    return std::max(always, memory / 4);
}

}  // namespace zelmo
