#pragma once

#include <cstddef>

namespace zelmo {

// How much memory the program holds. For programs that are built with allocated_memory.cpp, which
// replaces their operator new.

/// What is held now, in bytes.
std::size_t HeldMemory();

/// Begins to watch for the most that is held at a time.
void WatchMemory();

/// The most that was held at a time since then, beyond what was held then.
std::size_t PeakMemory();

}  // namespace zelmo
