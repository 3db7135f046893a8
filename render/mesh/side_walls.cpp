#include "render/mesh/side_walls.h"

#include <array>

#include "render/mesh/mesh_window.h"

namespace zelmo {

namespace {

/// A side of the window: its places one after the other, and where it faces.
struct Side {
    std::int32_t count = 0;
    std::int32_t col = 0;  ///< of the first place
    std::int32_t row = 0;
    std::int32_t dCol = 0;  ///< to the next one
    std::int32_t dRow = 0;
    std::array<float, 2> facing{};
};

void AppendSide(const MeshWindow& window, const Side& side, LayerMesh& mesh) {
    const auto first = static_cast<std::uint32_t>(mesh.vertices.size());
    const float spacing = window.layer.spacing;
    for (std::int32_t i = 0; i < side.count; ++i) {
        const std::int32_t col = side.col + i * side.dCol;
        const std::int32_t row = side.row + i * side.dRow;
        const std::size_t cell = window.GridIndex(col, row);
        for (const float z : {window.layer.bottom[cell], window.layer.top[cell]}) {
            mesh.vertices.push_back(
                {{static_cast<float>(col) * spacing, static_cast<float>(row) * spacing, z},
                 {side.facing[0], side.facing[1], 0.0f}});
        }
        const bool hasPiece =
            i > 0 && (window.IsThick(col, row) || window.IsThick(col - side.dCol, row - side.dRow));
        if (hasPiece) {
            const std::uint32_t foot = first + 2 * static_cast<std::uint32_t>(i);
            for (const std::uint32_t corner : {foot - 2, foot + 1, foot - 1}) {
                mesh.indices.push_back(corner);
            }
            for (const std::uint32_t corner : {foot - 2, foot, foot + 1}) {
                mesh.indices.push_back(corner);
            }
        }
    }
}

}  // namespace

LayerMesh MakeSideWalls(const Layer& layer, std::int32_t marginCols, std::int32_t marginRows,
                        const WindowSides& sides) {
    const MeshWindow window(layer, marginCols, marginRows);
    LayerMesh mesh;
    if (window.cols < 1 || window.rows < 1) {
        return mesh;
    }
    if (sides.back) {
        AppendSide(window, {window.cols, 0, window.rows - 1, 1, 0, {0.0f, 1.0f}}, mesh);
    }
    if (sides.left) {
        AppendSide(window, {window.rows, 0, 0, 0, 1, {-1.0f, 0.0f}}, mesh);
    }
    if (sides.right) {
        AppendSide(window, {window.rows, window.cols - 1, 0, 0, 1, {1.0f, 0.0f}}, mesh);
    }
    return mesh;
}

}  // namespace zelmo
