#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <initializer_list>
#include <memory>
#include <new>
#include <stdexcept>
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
    GrowingArray(std::initializer_list<T> items) {
        for (const T& item : items) {
            push_back(item);
        }
    }
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

    void push_back(const T& item) {
        const T copy = item;  // which may be one of the list's own
        if (size_ == capacity_) {
            SetCapacity(std::max<std::size_t>(4, 2 * capacity_));
        }
        items_.get()[size_++] = copy;
    }
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
    T& operator[](std::size_t index) { return items_.get()[index]; }
    const T& operator[](std::size_t index) const { return items_.get()[index]; }
    T& back() { return items_.get()[size_ - 1]; }
    const T& at(std::size_t index) const {
        if (index >= size_) {
            throw std::out_of_range("index beyond the end of a list");
        }
        return items_.get()[index];
    }

private:
    struct Free {
        void operator()(T* items) const { std::free(items); }
    };

    void SetCapacity(std::size_t capacity) {
        void* const longer = std::realloc(items_.get(), capacity * sizeof(T));
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
