#pragma once

#include <cstdint>
#include <vector>

#include "model/grid/grid.h"
#include "model/mask/mask_polygon.h"
#include "model/process.h"
#include "model/stack.h"

namespace zelmo {

/// The one object of a run: what the process file asks for, the grid, the masks and the stack of
/// layers.
struct ProcessModel {
    ProcessSettings settings;
    std::vector<ProcessStep> steps;  ///< the substrate step first
    Grid grid;
    std::vector<MaskPolygon> polygons;  ///< of all masks
    std::uint64_t skippedPolygons = 0;  ///< those of any layer that are too small for the grid
    Stack stack;
};

}  // namespace zelmo
