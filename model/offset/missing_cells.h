#pragma once

#include <cstdint>
#include <span>

namespace zelmo {

/// Gives each cell of a raster without a value one from its surroundings: the surface continued
/// along the nearest of the four grid directions that meets a cell with a value (the mean of
/// equally near ones), or else the value of the nearest cell, of equally near ones the first in the
/// order of the neighbour table. The surface is continued on the line through the first two cells
/// with a value on the way; one alone gives its own value. Filled values are not used for filling.
/// The value 0.0, of either sign, stands for none; NaN counts as a value. Where no cell has a value
/// all become 0.0. Returns the number of cells filled.
std::int32_t FillMissingCells(std::int32_t cols, std::int32_t rows, float spacing,
                              std::span<float> heights);

}  // namespace zelmo
