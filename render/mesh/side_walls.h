#pragma once

#include "render/mesh/layer_mesh.h"

namespace zelmo {

/// Sides of the window beside its front, whose wall is a part of each layer's mesh.
struct WindowSides {
    bool left = false;
    bool right = false;
    bool back = false;

    bool Any() const { return left || right || back; }
    bool operator==(const WindowSides&) const = default;
};

/// The walls between a layer's two sheets at these sides of the window, made as that at the front:
/// wherever the layer exists at one end of a piece. Without the grid's margin of `marginCols` and
/// `marginRows` cells.
LayerMesh MakeSideWalls(const Layer& layer, std::int32_t marginCols, std::int32_t marginRows,
                        const WindowSides& sides);

}  // namespace zelmo
