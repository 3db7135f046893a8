#pragma once

#include <cstddef>

namespace zelmo {

/// Begins to watch how much memory the program holds.
void WatchMemory();

/// The most that was held at a time since then, beyond what was held then. Works in programs that
/// link allocated_memory.cpp, which replaces their operator new.
std::size_t PeakMemory();

}  // namespace zelmo
