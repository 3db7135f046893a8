#pragma once

#include <cstdint>

#include "base/physical_memory.h"
#include "gds/gzip_fault.h"

namespace zelmo {

/// How a layout is to be read.
struct LayoutOptions {
    /// Whether to read paths that would be refused for their shape as what they mean
    /// (gds/path_repair.h), and to skip references to cells that are not there. Nothing else
    /// changes. The database tells how often it happened.
    bool repair = false;
    /// Whether to keep the texts, which no mask needs. Nothing else changes.
    bool texts = false;
    /// The most that a compressed file may unpack to, in bytes.
    std::uint64_t unpackedLimit = UnpackedLimit(PhysicalMemory());
};

}  // namespace zelmo
