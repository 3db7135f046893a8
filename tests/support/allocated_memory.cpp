#include "tests/support/allocated_memory.h"

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::int64_t> held{0};
std::atomic<std::int64_t> most{0};
std::int64_t heldAtStart = 0;

/// Stands in front of every allocation.
struct alignas(std::max_align_t) Head {
    std::int64_t size = 0;
};

void NoteAllocation(std::int64_t size) {
    const std::int64_t now = held += size;
    std::int64_t before = most;
    while (before < now && !most.compare_exchange_weak(before, now)) {
    }
}

}  // namespace

std::size_t zelmo::HeldMemory() {
    return static_cast<std::size_t>(held);
}

void zelmo::WatchMemory() {
    heldAtStart = held;
    most = heldAtStart;
}

std::size_t zelmo::PeakMemory() {
    return static_cast<std::size_t>(most - heldAtStart);
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    void* const memory =
        size <= SIZE_MAX - sizeof(Head) ? std::malloc(size + sizeof(Head)) : nullptr;
    if (memory == nullptr) {
        return nullptr;
    }
    Head* const head = new (memory) Head{static_cast<std::int64_t>(size)};
    NoteAllocation(head->size);
    return head + 1;
}

void* operator new(std::size_t size) {
    void* const memory = operator new(size, std::nothrow);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

void operator delete(void* memory) noexcept {
    if (memory != nullptr) {
        Head* const head = static_cast<Head*>(memory) - 1;
        held -= head->size;
        std::free(head);
    }
}

void operator delete(void* memory, std::size_t) noexcept {
    operator delete(memory);
}
