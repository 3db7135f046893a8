#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "render/visible/visible_lanes.h"

namespace zelmo {

/// Rows of values, padded for the lane kernels.
template <typename T>
class PaddedRows {
public:
    PaddedRows(std::size_t count, std::int32_t cols)
        : stride_(static_cast<std::size_t>(cols) + 3 * rowPad), values_(count * stride_) {}

    T* At(std::size_t row) { return values_.data() + row * stride_ + rowPad; }

    /// Copies a row and repeats its last value behind it.
    void Fill(std::size_t row, std::span<const T> values) {
        T* start = At(row);
        std::copy(values.begin(), values.end(), start);
        std::fill_n(start + values.size(), rowPad, values.back());
    }

    void Fill(std::size_t row, T value) { std::fill_n(At(row) - rowPad, stride_, value); }

private:
    std::size_t stride_;
    std::vector<T> values_;
};

}  // namespace zelmo
