#pragma once

namespace zelmo {

struct Layer;
struct Grid;

/// Replaces the layer's `top` by its mean over a disc of `radius` micrometres, but nowhere by less
/// than `bottom`. The disc slides along the rows (model/disc/sliding_disc.h); the roundings of the
/// sums are part of the result. Takes 8 bytes of memory a cell.
void SmoothLayerTop(const Grid& grid, Layer& layer, float radius);

}  // namespace zelmo
