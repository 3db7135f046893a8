#pragma once

#include <span>

namespace zelmo {

struct CoverCell;
struct Grid;
struct Layer;

/// Lays a coating of `thickness` micrometres on the present surface and levels it. `planarisation`
/// is its degree: 0 copies the surface, 1 averages over 2.2 thicknesses around each cell. Fills
/// `top` and `bottom` of a layer that has the grid's size and is not in the stack yet.
void CoatLayer(const Grid& grid, std::span<const CoverCell> coverMap, Layer& layer, float thickness,
               float planarisation);

}  // namespace zelmo
