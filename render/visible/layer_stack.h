#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "render/mesh/mesh_window.h"

namespace zelmo {

struct Grid;
struct Stack;

/// The layers of a stack, lowest first, over one grid.
struct LayerStack {
    std::vector<MeshWindow> layers;
    std::vector<std::size_t> slots;  ///< of the layers in the model's stack, ascending
    std::int32_t cols = 0;           ///< of the meshes
    std::int32_t rows = 0;
    float spacing = 0.0f;

    std::int32_t LayerCount() const { return static_cast<std::int32_t>(layers.size()); }
    std::size_t Squares() const { return static_cast<std::size_t>(cols - 1); }
};

inline bool IsOpaque(const Layer& layer) {
    return layer.alpha >= 1.0f;
}

/// Empty if there are no meshes of one grid with at least one square.
std::optional<LayerStack> FindStack(const Stack& source, const Grid& grid);

}  // namespace zelmo
