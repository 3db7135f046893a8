#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

#include "model/grid/drawn_square.h"
#include "render/mesh/mesh_window.h"

// How the vertices of a layer's mesh are numbered: by first use in the order of its triangles,
// square by square along the first row of squares, row by row from the front, then the front wall.
// A row of squares lies between two rows of positions, its front and its back. A square has two
// triangles; where one is there, both sheets have it, the lower sheet first. How many vertices a
// row of squares adds does not depend on their numbers, so that the rows can be counted first and
// numbered in any order.

namespace zelmo {

// Squares are bytes (model/grid/drawn_square.h) whose other bits are their user's own.

constexpr std::uint32_t unnumbered = std::numeric_limits<std::uint32_t>::max();

/// The numbers of a mesh position's vertices on the two sheets. They are given together.
struct VertexNumbers {
    std::uint32_t lower = unnumbered;
    std::uint32_t upper = unnumbered;

    bool Given() const { return lower != unnumbered; }
};

using NumberRow = std::vector<VertexNumbers>;

/// How many vertices are first used in a row of `count` squares. `before` are the squares of the
/// row before it, or null.
std::uint32_t CountNewVertices(const std::uint8_t* before, const std::uint8_t* squares,
                               std::size_t count);

/// Numbers the vertices of a row of squares from `next` on. `front` holds the numbers that the row
/// of squares before gave to its back, and receives the others; `back` receives those behind.
void NumberSquareRow(const std::uint8_t* squares, std::size_t count, NumberRow& front,
                     NumberRow& back, std::uint32_t next);

/// Marks with zeros where a row of squares gives numbers at its back, or nowhere for null: enough
/// to number the next row's own vertices.
void MarkBackRow(const std::uint8_t* squares, std::size_t count, NumberRow& row);

/// Whether there is a piece of front wall between this column and the next.
inline bool HasWall(const MeshWindow& window, std::int32_t col) {
    return window.IsThick(col, 0) || window.IsThick(col + 1, 0);
}

/// Calls `corner(column, isHead, number, isNew)` for the corners of the front wall's triangles in
/// their order. Its vertices are numbered from `next` on.
template <typename Corner>
void VisitWall(const MeshWindow& window, std::uint32_t next, Corner&& corner) {
    // Of the column at hand and the one to its right
    VertexNumbers left;
    VertexNumbers right;
    const auto visit = [&](std::int32_t col, bool isHead, std::uint32_t& number) {
        const bool isNew = number == unnumbered;
        if (isNew) {
            number = next++;
        }
        corner(col, isHead, number, isNew);
    };
    for (std::int32_t col = 0; col + 1 < window.cols; ++col) {
        if (HasWall(window, col)) {
            visit(col, false, left.lower);
            visit(col + 1, true, right.upper);
            visit(col, true, left.upper);
            visit(col, false, left.lower);
            visit(col + 1, false, right.lower);
            visit(col + 1, true, right.upper);
        }
        left = right;
        right = {};
    }
}

}  // namespace zelmo
