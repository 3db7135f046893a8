#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "model/grid/grid.h"
#include "model/offset/surface_offset.h"

// The surface offset step by step over whole arrays: all normals, then the list of all triangles
// with their rectangles, then the raster, then the filling. Slow and plain; the engine of the model
// must give the same bits.

namespace zelmo {

using Point3 = std::array<float, 3>;

/// What a search along one direction of the grid found: the value continued to the start of the
/// search, and the distance to the first cell with a value in micrometres.
struct LineHitPlain {
    float value = 0.0f;
    float distance = 0.0f;
    bool found = false;
};

struct OffsetTriangle {
    Point3 a{}, b{}, c{};
    Point3 moveA{}, moveB{}, moveC{};
    Point3 normal{};
    std::int32_t minCol = 0;
    std::int32_t maxCol = 0;
    std::int32_t minRow = 0;
    std::int32_t maxRow = 0;
};

void ComputeVertexNormalsPlain(std::int32_t cols, std::int32_t rows, float spacing,
                               std::span<float> normals, std::span<const float> heights);

std::vector<OffsetTriangle> BuildOffsetTrianglesPlain(std::int32_t cols, std::int32_t rows,
                                                      float spacing, std::span<const float> heights,
                                                      std::span<const float> normals,
                                                      float distance, float lateral);

LineHitPlain FindAlongLinePlain(std::int32_t cols, std::int32_t rows, float spacing,
                                std::int32_t startCol, std::int32_t startRow, std::int32_t stepCol,
                                std::int32_t stepRow, std::span<const float> in);

std::int32_t FillMissingCellsPlain(std::int32_t cols, std::int32_t rows, float spacing,
                                   const NeighbourTable& table, std::span<float> out,
                                   std::span<const float> in);

void OffsetSurfacePlain(const Grid& grid, std::span<float> out, std::span<const float> heights,
                        float distance, float lateral);

}  // namespace zelmo
