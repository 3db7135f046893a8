#pragma once

#include <algorithm>
#include <cstddef>
#include <initializer_list>
#include <memory>
#include <span>
#include <stdexcept>
#include <vector>

namespace zelmo {

/// An array of plain values. Copies share them until one is about to be written: whoever writes
/// calls Unshare() first. Reading and writing cost what they cost in an array of one's own.
template <typename T>
class SharedArray {
public:
    using value_type = T;
    using const_iterator = const T*;
    using iterator = T*;

    SharedArray() = default;
    explicit SharedArray(std::span<const T> values) { *this = values; }

    /// A copy of these values, shared with nobody.
    SharedArray& operator=(std::span<const T> values) {
        const std::shared_ptr<T[]> fresh = std::make_shared_for_overwrite<T[]>(values.size());
        std::copy(values.begin(), values.end(), fresh.get());
        values_ = fresh;
        size_ = values.size();
        return *this;
    }
    SharedArray& operator=(std::initializer_list<T> values) {
        return *this = std::span<const T>(values.begin(), values.size());
    }

    void assign(std::size_t count, const T& value) {
        values_ = std::make_shared<T[]>(count, value);
        size_ = count;
    }

    /// Makes the values this array's own, so that writing them changes no copy. Throws
    /// std::bad_alloc, and changes nothing then.
    void Unshare() {
        if (values_.use_count() > 1) {
            *this = std::span<const T>(*this);
        }
    }

    /// Whether both are the same values in memory.
    bool SharesWith(const SharedArray& other) const { return values_ == other.values_; }

    std::size_t size() const { return size_; }
    bool empty() const { return size_ == 0; }
    const T* data() const { return values_.get(); }
    T* data() { return values_.get(); }
    /// Throws std::out_of_range.
    const T& at(std::size_t index) const {
        if (index >= size_) {
            throw std::out_of_range("an index is beyond its array");
        }
        return values_[index];
    }
    const T& operator[](std::size_t index) const { return values_[index]; }
    T& operator[](std::size_t index) { return values_[index]; }
    const T* begin() const { return data(); }
    const T* end() const { return data() + size_; }
    T* begin() { return data(); }
    T* end() { return data() + size_; }

    bool operator==(const SharedArray& other) const { return std::ranges::equal(*this, other); }
    bool operator==(const std::vector<T>& other) const { return std::ranges::equal(*this, other); }

private:
    std::shared_ptr<T[]> values_;
    std::size_t size_ = 0;
};

}  // namespace zelmo
