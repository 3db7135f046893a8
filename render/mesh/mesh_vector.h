#pragma once

#include <memory>
#include <new>
#include <utility>
#include <vector>

namespace zelmo {

/// Allocates elements that hold nothing yet where no value is given for them.
template <typename T>
struct BareAllocator : std::allocator<T> {
    template <typename U>
    struct rebind {
        using other = BareAllocator<U>;
    };
    template <typename U>
    void construct(U* place) {
        ::new (static_cast<void*>(place)) U;
    }
    template <typename U, typename... Values>
    void construct(U* place, Values&&... values) {
        ::new (static_cast<void*>(place)) U(std::forward<Values>(values)...);
    }
};

/// A vector that can be resized without being filled first, for what is too large to write twice.
template <typename T>
using BareVector = std::vector<T, BareAllocator<T>>;

}  // namespace zelmo
