#pragma once

#include <cstdint>
#include <span>

// Moves a height field along its normals. Works from plain arrays to plain arrays of one float per
// cell, row-major.

namespace zelmo {

struct Grid;

/// Moves every point of the surface `heights` up by the signed `distance` (micrometres), and
/// sideways by `lateral` * `distance` along the horizontal part of its unit normal, and stores the
/// resulting height field in `out`. Where the moved surface folds over itself, the highest sheet
/// counts for a rising surface, the lowest for a sinking one; where it leaves gaps they are filled
/// (FillMissingCells). `out` and `heights` hold one float per cell and do not overlap. Needs four
/// bytes of memory for a cell, and then 28 for a gap. Works on all cores.
void OffsetSurface(const Grid& grid, std::span<float> out, std::span<const float> heights,
                   float distance, float lateral);

/// Fills `normals` with three floats per cell: the unit normal of the surface, which points up, or
/// (0, 0, 0) where it has none.
void ComputeVertexNormals(std::int32_t cols, std::int32_t rows, float spacing,
                          std::span<float> normals, std::span<const float> heights);

}  // namespace zelmo
