#pragma once

#include <cstdint>

namespace zelmo {

/// The bytes of the machine's memory, whoever uses them; 0 if the system does not tell.
std::uint64_t PhysicalMemory();

}  // namespace zelmo
