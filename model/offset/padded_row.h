#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace zelmo {

/// How many values stand before the first and behind the last column of a padded row, so that
/// lanes can be loaded and stored a column to the side and beyond the row's end.
constexpr std::int32_t rowPadding = 8;

/// A row of a grid between paddings, which hold zeros or what lanes left there.
class PaddedRow {
public:
    explicit PaddedRow(std::int32_t cols)
        : values_(static_cast<std::size_t>(cols) + 2 * static_cast<std::size_t>(rowPadding)) {}

    float* Data() { return values_.data() + rowPadding; }
    const float* Data() const { return values_.data() + rowPadding; }

    void CopyFrom(std::span<const float> row) { std::copy(row.begin(), row.end(), Data()); }

private:
    std::vector<float> values_;
};

}  // namespace zelmo
