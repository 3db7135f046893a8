#include "tests/support/limited_memory.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::int64_t> allocationsLeft{-1};
std::atomic<std::int64_t> livingAllocations{0};

}  // namespace

void zelmo::LimitAllocations(std::int64_t count) {
    allocationsLeft = count;
}

std::int64_t zelmo::LivingAllocations() {
    return livingAllocations;
}

void* operator new(std::size_t size) {
    if (allocationsLeft == 0) {
        throw std::bad_alloc();
    }
    if (allocationsLeft > 0) {
        --allocationsLeft;
    }
    if (void* memory = std::malloc(size == 0 ? 1 : size)) {
        ++livingAllocations;
        return memory;
    }
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept {
    if (memory != nullptr) {
        --livingAllocations;
        std::free(memory);
    }
}

void operator delete(void* memory, std::size_t) noexcept {
    operator delete(memory);
}
