#pragma once

#include <cstdint>

#include "base/physical_memory.h"
#include "gds/gzip_fault.h"

namespace zelmo {

/// How a layout is to be read.
struct LayoutOptions {
    /// The most that a compressed file may unpack to, in bytes.
    std::uint64_t unpackedLimit = UnpackedLimit(PhysicalMemory());
};

}  // namespace zelmo
