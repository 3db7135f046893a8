#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <span>
#include <type_traits>
#include <utility>

namespace zelmo {

/// A list of plain records like a std::vector, but for growing: it asks the system for a longer
/// piece of memory in place of another piece to copy to. A large list then stands in memory once at
/// any time.
template <typename T>
class GrowingArray {
    static_assert(std::is_trivially_copyable_v<T> && alignof(T) <= alignof(std::max_align_t));

public:
    GrowingArray() = default;
    GrowingArray(GrowingArray&& other) noexcept
        : items_(std::move(other.items_)),
          size_(std::exchange(other.size_, 0)),
          capacity_(std::exchange(other.capacity_, 0)) {}
    GrowingArray& operator=(GrowingArray&& other) noexcept {
        items_ = std::move(other.items_);
        size_ = std::exchange(other.size_, 0);
        capacity_ = std::exchange(other.capacity_, 0);
        return *this;
    }

    void push_back(T item) {
        if (size_ == capacity_) {
            Reserve(size_ + 1);
        }
        ::new (items_.get() + size_++) T(std::move(item));
    }
    /// Adds the records of another list, which is empty then and keeps its memory.
    void Take(GrowingArray& other) {
        Reserve(size_ + other.size_);
        if (other.size_ != 0) {
            std::memcpy(static_cast<void*>(end()), other.begin(), other.size_ * sizeof(T));
        }
        size_ += std::exchange(other.size_, 0);
    }
    /// Keeps the memory for other items.
    void clear() { size_ = 0; }
    /// Gives back the memory beyond the last item.
    void shrink_to_fit() {
        if (size_ != 0 && size_ != capacity_) {
            SetCapacity(size_);
        }
    }

    std::size_t size() const { return size_; }
    bool empty() const { return size_ == 0; }
    T* begin() { return items_.get(); }
    T* end() { return items_.get() + size_; }
    const T* begin() const { return items_.get(); }
    const T* end() const { return items_.get() + size_; }
    std::span<T> Items() { return {begin(), size_}; }
    std::span<const T> Items() const { return {begin(), size_}; }
    T& operator[](std::size_t index) { return items_.get()[index]; }
    const T& operator[](std::size_t index) const { return items_.get()[index]; }
    T& back() { return items_.get()[size_ - 1]; }
    const T& back() const { return items_.get()[size_ - 1]; }

private:
    struct Free {
        void operator()(T* items) const { std::free(items); }
    };

    /// Twice the room; but a list that is no longer small gets so much that the system gives it
    /// memory of its own, which then grows without a copy and leaves no hole where it lay.
    std::size_t NextCapacity() const {
        constexpr std::size_t smallest = 4;
        constexpr std::size_t small = (std::size_t{1} << 20) / sizeof(T);
        constexpr std::size_t large = (std::size_t{1} << 26) / sizeof(T);
        return capacity_ < small ? std::max(smallest, 2 * capacity_)
                                 : std::max(large, 2 * capacity_);
    }

    void Reserve(std::size_t size) {
        if (size > capacity_) {
            SetCapacity(std::max(NextCapacity(), size));
        }
    }

    void SetCapacity(std::size_t capacity) {
        if (capacity > std::numeric_limits<std::size_t>::max() / sizeof(T)) {
            throw std::bad_alloc();
        }
        void* const longer = std::realloc(static_cast<void*>(items_.get()), capacity * sizeof(T));
        if (longer == nullptr) {
            throw std::bad_alloc();
        }
        static_cast<void>(items_.release());
        items_.reset(static_cast<T*>(longer));
        capacity_ = capacity;
    }

    std::unique_ptr<T, Free> items_;
    std::size_t size_ = 0;
    std::size_t capacity_ = 0;
};

}  // namespace zelmo
