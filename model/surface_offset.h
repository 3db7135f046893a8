#pragma once

#include <cstdint>
#include <span>

#include "model/process_model.h"

// Moves a height field along its normals. Works from plain arrays to plain arrays of one float per
// cell, row-major. In what the engine rasterises, the value 0.0 stands for a cell without a value;
// NaN counts as a value.

namespace zelmo {

/// What a search along one direction of the grid found: the value continued to the start of the
/// search, and the distance to the first cell with a value in micrometres.
struct LineHit {
    float value = 0.0f;
    float distance = 0.0f;
    bool found = false;
};

/// Moves every point of the surface `heights` up by the signed `distance` (micrometres), and
/// sideways by `lateral` * `distance` along the horizontal part of its unit normal, and stores the
/// resulting height field in `out`. Where the moved surface folds over itself, the highest sheet
/// counts for a rising surface, the lowest for a sinking one. Reads grid size and spacing of the
/// model. `out` and `heights` hold one float per cell and do not overlap.
void OffsetSurface(const ProcessModel& model, std::span<float> out, std::span<const float> heights,
                   float distance, float lateral);

/// Fills `normals` with three floats per cell: the unit normal of the surface, which points up, or
/// (0, 0, 0) where it has none.
void ComputeVertexNormals(std::int32_t cols, std::int32_t rows, float spacing,
                          std::span<float> normals, std::span<const float> heights);

/// Copies `in` to `out` and gives each cell without a value one from its surroundings: the
/// surface continued along the nearest of the four grid directions that meets a cell with a value
/// (the mean of equally near ones), or else the value of the nearest cell, of equally near ones the
/// first in the order of the neighbour table.
/// Filled values are not used for filling. A cell stays 0.0 only where no cell has a value.
/// Returns the number of cells filled.
std::int32_t FillMissingCells(std::int32_t cols, std::int32_t rows, float spacing,
                              std::span<float> out, std::span<const float> in);

/// Walks from the start, which does not count itself, by (stepCol, stepRow) to the grid's edge and
/// continues the line through the first two cells with a value back to the start. One cell alone
/// gives its own value.
LineHit FindAlongLine(std::int32_t cols, std::int32_t rows, float spacing, std::int32_t startCol,
                      std::int32_t startRow, std::int32_t stepCol, std::int32_t stepRow,
                      std::span<const float> in);

}  // namespace zelmo
