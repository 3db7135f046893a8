#include "tests/damage/allocated_memory.h"

#include <malloc.h>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::int64_t> held{0};
std::atomic<std::int64_t> most{0};
std::int64_t heldAtStart = 0;

}  // namespace

void zelmo::WatchMemory() {
    heldAtStart = held;
    most = heldAtStart;
}

std::size_t zelmo::PeakMemory() {
    return static_cast<std::size_t>(most - heldAtStart);
}

void* operator new(std::size_t size) {
    void* const memory = std::malloc(size == 0 ? 1 : size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    const std::int64_t now = held += static_cast<std::int64_t>(malloc_usable_size(memory));
    std::int64_t before = most;
    while (before < now && !most.compare_exchange_weak(before, now)) {
    }
    return memory;
}

void operator delete(void* memory) noexcept {
    held -= static_cast<std::int64_t>(malloc_usable_size(memory));
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    operator delete(memory);
}
