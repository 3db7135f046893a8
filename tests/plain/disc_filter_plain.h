#pragma once

namespace zelmo {

struct Layer;
struct Grid;

/// The sliding mean over a disc, with every bound tested at every cell.
void SmoothLayerTopPlain(const Grid& grid, Layer& layer, float radius);

/// The mean over the disc summed up anew at every cell. Not the same bits: it differs where an
/// offset lies on the disc's edge, and by the rounding of the carried sum.
void SmoothLayerTopDirect(const Grid& grid, Layer& layer, float radius);

}  // namespace zelmo
