#include "results/models/surface_facets.h"

#include <algorithm>
#include <array>
#include <numeric>

namespace zelmo {

namespace {

/// The two triangles at an edge from a node, as a square and its half.
struct EdgeTriangles {
    SectorTriangle left;
    SectorTriangle right;
};

EdgeTriangles TrianglesAt(int direction) {
    return {sectorTriangles[direction], sectorTriangles[(direction + 5) % 6]};
}

}  // namespace

SurfaceFacets::SurfaceFacets(const LayerArea& area, LayerSide side, double bound)
    : area_(area),
      side_(side),
      boundaries_(area.NodeCount()),
      nodes_(area.NodeCount(), NodeKind::Inner),
      parents_(2 * area.NodeCount()),
      pinches_(area.NodeCount()) {
    std::iota(parents_.begin(), parents_.end(), 0u);
    for (std::int32_t row = 0; row < area.Rows(); ++row) {
        for (std::int32_t col = 0; col < area.Cols(); ++col) {
            pinches_[area.Node(col, row)] = IsPinch(area, col, row) ? 1 : 0;
        }
    }
    const PlaneBlocks blocks = FindPlaneBlocks(area, side, bound);
    for (std::int32_t row = 0; row < area.Rows(); ++row) {
        FindBoundaries(row, blocks);
    }
    FindCorners();
}

std::uint32_t SurfaceFacets::Root(std::uint32_t triangle) {
    while (parents_[triangle] != triangle) {
        parents_[triangle] = parents_[parents_[triangle]];
        triangle = parents_[triangle];
    }
    return triangle;
}

void SurfaceFacets::Join(std::uint32_t first, std::uint32_t second) {
    first = Root(first);
    second = Root(second);
    parents_[std::max(first, second)] = std::min(first, second);
}

bool SurfaceFacets::HasLooseEnd(std::int32_t col, std::int32_t row, int direction) const {
    const auto& [stepCol, stepRow] = edgeSteps[direction];
    return pinches_[area_.Node(col, row)] != 0 ||
           pinches_[area_.Node(col + stepCol, row + stepRow)] != 0 ||
           IsTouchingEdge(area_, col, row, direction);
}

/// Whether the two triangles at an edge, which are there, belong to one facet.
bool SurfaceFacets::AreJoined(std::int32_t col, std::int32_t row, int direction,
                              const PlaneBlocks& blocks) const {
    if (area_.IsInverted() || HasLooseEnd(col, row, direction)) {
        return false;
    }
    const auto [left, right] = TrianglesAt(direction);
    const std::size_t leftSquare = area_.Node(col + left.square.col, row + left.square.row);
    const std::size_t rightSquare = area_.Node(col + right.square.col, row + right.square.row);
    if (blocks.levels[leftSquare] != 0 || blocks.levels[rightSquare] != 0) {
        return blocks.AreTogether(leftSquare, rightSquare);
    }
    // Both lie in one plane where the edge and the way between the corners that face it cross in
    // their middles. These sums are exact.
    const auto height = [&](const GridStep& step) -> double {
        return area_.Height(side_, col + step.col, row + step.row);
    };
    return height({0, 0}) + height(edgeSteps[direction]) ==
           height(edgeSteps[(direction + 1) % 6]) + height(edgeSteps[(direction + 5) % 6]);
}

void SurfaceFacets::FindBoundaries(std::int32_t row, const PlaneBlocks& blocks) {
    for (std::int32_t col = 0; col < area_.Cols(); ++col) {
        for (int direction = 0; direction < 3; ++direction) {
            const auto [left, right] = TrianglesAt(direction);
            const std::int32_t leftCol = col + left.square.col;
            const std::int32_t leftRow = row + left.square.row;
            const std::int32_t rightCol = col + right.square.col;
            const std::int32_t rightRow = row + right.square.row;
            const bool hasLeft = (area_.Square(leftCol, leftRow) & left.half) != 0;
            const bool hasRight = (area_.Square(rightCol, rightRow) & right.half) != 0;
            if (hasLeft && hasRight && AreJoined(col, row, direction, blocks)) {
                Join(TriangleNumber(leftCol, leftRow, left.half),
                     TriangleNumber(rightCol, rightRow, right.half));
            } else if (hasLeft || hasRight) {
                boundaries_[area_.Node(col, row)] |= static_cast<std::uint8_t>(1u << direction);
            }
        }
    }
}

bool SurfaceFacets::IsBoundary(std::int32_t col, std::int32_t row, int direction) const {
    return (boundaries_[area_.Node(col, row)] >> direction & 1) != 0;
}

void SurfaceFacets::FindCorners() {
    for (std::int32_t row = 0; row < area_.Rows(); ++row) {
        for (std::int32_t col = 0; col < area_.Cols(); ++col) {
            std::array<bool, 6> isBoundary{};
            for (int direction = 0; direction < 3; ++direction) {
                isBoundary[static_cast<std::size_t>(direction)] = IsBoundary(col, row, direction);
                const std::int32_t otherCol = col - edgeSteps[direction].col;
                const std::int32_t otherRow = row - edgeSteps[direction].row;
                const bool isInside = otherCol >= 0 && otherRow >= 0 && otherCol < area_.Cols() &&
                                      otherRow < area_.Rows();
                isBoundary[static_cast<std::size_t>(direction) + 3] =
                    isInside && IsBoundary(otherCol, otherRow, direction);
            }
            const auto count = std::count(isBoundary.begin(), isBoundary.end(), true);
            const bool isLine = count == 2 && ((isBoundary[0] && isBoundary[3]) ||
                                               (isBoundary[1] && isBoundary[4]) ||
                                               (isBoundary[2] && isBoundary[5]));
            nodes_[area_.Node(col, row)] = count == 0 ? NodeKind::Inner
                                           : isLine   ? NodeKind::OnLine
                                                      : NodeKind::Corner;
        }
    }
}

}  // namespace zelmo
