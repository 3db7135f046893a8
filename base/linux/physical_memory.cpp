#include "base/physical_memory.h"

#include <unistd.h>

namespace zelmo {

std::uint64_t PhysicalMemory() {
    const long pages = sysconf(_SC_PHYS_PAGES);
    const long pageSize = sysconf(_SC_PAGESIZE);
    return pages > 0 && pageSize > 0
               ? static_cast<std::uint64_t>(pages) * static_cast<std::uint64_t>(pageSize)
               : 0;
}

}  // namespace zelmo
