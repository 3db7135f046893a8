#pragma once

#include <cstddef>
#include <cstdint>

#include "base/lanes.h"
#include "model/offset/vertex_lanes.h"

// Scans the moved surface, two triangles for each square of the grid, onto the grid's cells. All
// rows are padded (base/padded_rows.h).

namespace zelmo {

/// Rows of a grid that triangles are scanned onto. A cell without a value holds 0.0.
struct RasterBand {
    float* heights = nullptr;  ///< row `firstRow`, column 0
    std::ptrdiff_t stride = 0;
    std::int32_t firstRow = 0;
    std::int32_t endRow = 0;
    std::int32_t cols = 0;
    std::int32_t rows = 0;  ///< of the whole grid
    float spacing = 0.0f;
    const float* colX = nullptr;  ///< the columns' positions in micrometres
    /// Triangles no farther from the origin than this and with no more rise from corner to corner
    /// are gentle. Negative, if none count as such.
    float nearOrigin = -1.0f;
    float gentleRise = -1.0f;
};

/// The squares between two rows of moved vertices.
struct SquareRow {
    VertexRow lower;
    VertexRow upper;
    std::int32_t row = 0;  ///< of the lower ones
};

/// Scans a row of squares from left to right. Each cell of the band takes the height of every
/// triangle that it lies in, in the triangles' order, if it has no value yet or a higher one, or a
/// lower one.
ZELMO_DECLARE_LANE_KERNEL(void ScanSquaresLowest(const RasterBand& band, const SquareRow& squares))
ZELMO_DECLARE_LANE_KERNEL(void ScanSquaresHighest(const RasterBand& band, const SquareRow& squares))

}  // namespace zelmo
