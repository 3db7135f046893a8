#include "base/physical_memory.h"

#include <windows.h>

namespace zelmo {

std::uint64_t PhysicalMemory() {
    MEMORYSTATUSEX status = {};
    status.dwLength = sizeof status;
    return GlobalMemoryStatusEx(&status) != 0 ? status.ullTotalPhys : 0;
}

}  // namespace zelmo
