#include "tests/model/limited_memory.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <new>

namespace {

std::int64_t allocationsLeft = -1;

}  // namespace

void zelmo::LimitAllocations(std::int64_t count) {
    allocationsLeft = count;
}

void* operator new(std::size_t size) {
    if (allocationsLeft == 0) {
        throw std::bad_alloc();
    }
    if (allocationsLeft > 0) {
        --allocationsLeft;
    }
    if (void* memory = std::malloc(size == 0 ? 1 : size)) {
        return memory;
    }
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
