#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace zelmo {

/// How many values stand before the first and behind the last column of a padded row, at least, so
/// that vector lanes can be loaded and stored a column to the side and beyond the row's end.
constexpr std::int32_t rowPadding = 8;

/// Rows of values between paddings, zeros at first: work arrays of lane kernels, which may leave
/// anything in the padding.
template <typename Value>
class PaddedRows {
public:
    PaddedRows(std::size_t rows, std::int32_t cols)
        : stride_(StrideFor(cols)), values_(rows * stride_) {}

    /// Column 0 of a row.
    Value* At(std::size_t row) { return values_.data() + row * stride_ + rowPadding; }
    const Value* At(std::size_t row) const { return values_.data() + row * stride_ + rowPadding; }

    /// From a row to the next one.
    std::ptrdiff_t Stride() const { return static_cast<std::ptrdiff_t>(stride_); }

    /// Copies a row and leaves its padding.
    void Copy(std::size_t row, std::span<const Value> values) {
        std::copy(values.begin(), values.end(), At(row));
    }

    /// Copies a row and repeats its last value behind it.
    void Fill(std::size_t row, std::span<const Value> values) {
        Copy(row, values);
        std::fill_n(At(row) + values.size(), rowPadding, values.back());
    }

    /// The same value in a row and its padding.
    void Fill(std::size_t row, Value value) { std::fill_n(At(row) - rowPadding, stride_, value); }

private:
    /// An odd number of cache lines, so that neighbouring rows do not compete for a part of the
    /// cache.
    static std::size_t StrideFor(std::int32_t cols) {
        constexpr std::size_t line = 64 / sizeof(Value);
        return ((static_cast<std::size_t>(cols) + 3 * std::size_t{rowPadding} + line - 1) / line |
                1) *
               line;
    }

    std::size_t stride_;
    std::vector<Value> values_;
};

}  // namespace zelmo
