#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "model/grid/drawn_square.h"
#include "model/grid/shown_window.h"
#include "model/stack.h"

namespace zelmo {

/// The two surfaces that bound a layer.
enum class LayerSide { Bottom, Top };

/// Cells and triangles of a layer in the window, as they are drawn. Nodes are the window's cells,
/// counted from its lower left one; squares lie between four of them.
class LayerArea {
public:
    /// Throws std::length_error where there are more triangles than can be numbered.
    LayerArea(const Layer& layer, const ShownWindow& window);

    std::int32_t Cols() const { return window_.cols; }  ///< of nodes
    std::int32_t Rows() const { return window_.rows; }
    std::size_t NodeCount() const { return thick_.size(); }
    std::size_t Node(std::int32_t col, std::int32_t row) const {
        return static_cast<std::size_t>(row) * static_cast<std::size_t>(window_.cols) +
               static_cast<std::size_t>(col);
    }

    /// Whether the layer exists at a node.
    bool IsThick(std::int32_t col, std::int32_t row) const { return thick_[Node(col, row)] != 0; }

    /// Which triangles a square has (model/grid/drawn_square.h); none outside of the window. It
    /// lies to the upper right of its node.
    std::uint8_t Square(std::int32_t col, std::int32_t row) const {
        const bool isInside =
            col >= 0 && row >= 0 && col < window_.cols - 1 && row < window_.rows - 1;
        return isInside ? squares_[Node(col, row)] : std::uint8_t{0};
    }

    /// The height of a surface at a node, in micrometres.
    float Height(LayerSide side, std::int32_t col, std::int32_t row) const {
        const std::size_t i = window_.GridIndex(col, row);
        return side == LayerSide::Top ? layer_.top[i] : layer_.bottom[i];
    }

    /// A row of a surface.
    const float* HeightRow(LayerSide side, std::int32_t row) const {
        const std::size_t i = window_.GridIndex(0, row);
        return (side == LayerSide::Top ? layer_.top.data() : layer_.bottom.data()) + i;
    }

    bool IsEmpty() const { return isEmpty_; }          ///< there is no triangle
    bool IsFinite() const { return isFinite_; }        ///< every height is a number
    bool IsInverted() const { return isInverted_; }    ///< somewhere the top is below the bottom
    double Spacing() const { return layer_.spacing; }  ///< micrometres between nodes
    /// Of the solid between the surfaces as drawn, in squares of the grid times micrometres.
    double Volume() const { return volume_; }
    /// Of the triangles seen from above, in squares of the grid.
    double Extent() const { return extent_; }

private:
    void FindThick();
    void FindSquares();
    void Measure();

    const Layer& layer_;
    ShownWindow window_;
    std::vector<std::uint8_t> thick_;
    std::vector<std::uint8_t> squares_;  ///< by node, those of the last column and row empty
    bool isEmpty_ = true;
    bool isFinite_ = true;
    bool isInverted_ = false;
    double volume_ = 0.0;
    double extent_ = 0.0;
};

// The six directions in which edges lead from a node, counter-clockwise, and the sectors between
// each and the next, which each hold one triangle.

struct GridStep {
    std::int32_t col;
    std::int32_t row;
};
constexpr GridStep edgeSteps[6] = {{1, 0}, {0, 1}, {-1, 1}, {-1, 0}, {0, -1}, {1, -1}};

/// The square and the half of it that lie in a sector, the square as a step from the node.
struct SectorTriangle {
    GridStep square;
    std::uint8_t half;
};
constexpr SectorTriangle sectorTriangles[6] = {
    {{0, 0}, hasFrontTriangle},  {{-1, 0}, hasBackTriangle},  {{-1, 0}, hasFrontTriangle},
    {{-1, -1}, hasBackTriangle}, {{0, -1}, hasFrontTriangle}, {{0, -1}, hasBackTriangle}};

/// Whether a sector of a node has a triangle.
inline bool HasSector(const LayerArea& area, std::int32_t col, std::int32_t row, int sector) {
    const SectorTriangle& triangle = sectorTriangles[sector];
    return (area.Square(col + triangle.square.col, row + triangle.square.row) & triangle.half) != 0;
}

/// Whether the layer touches itself along an edge from a node: it exists on both sides of it and at
/// neither end.
bool IsTouchingEdge(const LayerArea& area, std::int32_t col, std::int32_t row, int direction);

/// Whether a touching edge is the only thing at a node where parts of the solid could come apart.
bool IsLoneEnd(const LayerArea& area, std::int32_t col, std::int32_t row, int direction);

/// Whether the layer exists around a node, at all neighbours, but not there.
bool IsPinch(const LayerArea& area, std::int32_t col, std::int32_t row);

}  // namespace zelmo
