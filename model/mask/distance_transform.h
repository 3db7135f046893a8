#pragma once

#include <cstdint>
#include <span>

namespace zelmo {

/// For every cell of a mask, row-major, the squared distance in cells to the nearest cell outside
/// it, exactly; 0 outside the mask. A mask that covers the whole grid has none: false, and the
/// values mean nothing. Linear time, whatever the mask is like. The grid has fewer than 2^14 rows
/// and columns.
bool SquaredDistanceTransform(std::span<std::int32_t> squared, std::span<const std::uint8_t> mask,
                              std::int32_t cols, std::int32_t rows);

}  // namespace zelmo
