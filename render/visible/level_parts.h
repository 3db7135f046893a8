#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "render/mesh/mesh_vertex.h"

// A level part of an opaque layer's upper sheet has one colour. Two large triangles that reach one
// square farther on all sides cover the same pixels as its many small ones, and a few more that
// have that colour too. Only the last bits of their depth differ. So nothing else may come so near,
// in the part and two squares around it, that these bits would decide.

namespace zelmo {

class SquareBytes;
struct ChosenTriangles;

/// So many squares across and along.
constexpr std::int32_t levelPartSize = 8;

/// A square of squares on the upper sheet of a layer.
struct LevelPart {
    std::size_t layer = 0;       ///< its place in the stack
    std::int32_t col = 0;        ///< the first
    std::int32_t squareRow = 0;  ///< the first
    float height = 0.0f;
};

/// Takes the triangles of level parts out of what was chosen, and lists those parts that had any.
/// `level` has 1 where the uppermost opaque layer is level.
void MergeLevelParts(ChosenTriangles& chosen, const SquareBytes& level);

/// Appends the corners of the two triangles that stand for a part.
void AppendCorners(const LevelPart& part, float spacing, std::vector<MeshVertex>& corners);

}  // namespace zelmo
