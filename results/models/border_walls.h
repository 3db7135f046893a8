#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "results/models/surface_triangles.h"

namespace zelmo {

/// A corner of a wall: a node on one of the surfaces.
struct WallCorner {
    LayerSide side = LayerSide::Bottom;
    std::int32_t col = 0;
    std::int32_t row = 0;
    int sector = 0;  ///< of the node, where the wall's piece ends there
};

/// Counter-clockwise from outside.
using WallTriangle = std::array<WallCorner, 3>;

/// The walls that close a layer where the window ends, between the corners of its surfaces.
std::vector<WallTriangle> MakeBorderWalls(const LayerArea& area, const LayerSurfaces& surfaces);

}  // namespace zelmo
