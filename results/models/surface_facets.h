#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "results/models/layer_area.h"
#include "results/models/plane_blocks.h"

namespace zelmo {

/// A surface of a layer, shared out into flat facets of connected triangles: those that lie exactly
/// in one plane, and pieces that do so but for a bound.
class SurfaceFacets {
public:
    /// `bound` in micrometres: no height lies further than that from its facets' planes. 0: exact.
    SurfaceFacets(const LayerArea& area, LayerSide side, double bound);

    /// Whether the edge of a node in one of the first three directions (`edgeSteps`) bounds a
    /// facet. That in the third direction is the diagonal of the square to the node's left.
    bool IsBoundary(std::int32_t col, std::int32_t row, int direction) const;

    /// Whether a vertex is needed at a node for the sake of this surface, as far as it can tell.
    bool IsCorner(std::int32_t col, std::int32_t row) const {
        return nodes_[area_.Node(col, row)] == NodeKind::Corner;
    }
    /// Whether a node lies on the boundary of a facet.
    bool IsOnBoundary(std::int32_t col, std::int32_t row) const {
        return nodes_[area_.Node(col, row)] != NodeKind::Inner;
    }

    /// The facet of a triangle that exists, as the number of one of its triangles.
    std::uint32_t FacetOf(std::int32_t col, std::int32_t row, std::uint8_t half) {
        return Root(TriangleNumber(col, row, half));
    }

private:
    enum class NodeKind : std::uint8_t { Inner, OnLine, Corner };

    std::uint32_t TriangleNumber(std::int32_t col, std::int32_t row, std::uint8_t half) const {
        return static_cast<std::uint32_t>(2 * area_.Node(col, row)) +
               (half == hasBackTriangle ? 1u : 0u);
    }
    std::uint32_t Root(std::uint32_t triangle);
    void Join(std::uint32_t first, std::uint32_t second);
    void FindBoundaries(std::int32_t row, const PlaneBlocks& blocks);
    bool AreJoined(std::int32_t col, std::int32_t row, int direction,
                   const PlaneBlocks& blocks) const;
    bool HasLooseEnd(std::int32_t col, std::int32_t row, int direction) const;
    void FindCorners();

    const LayerArea& area_;
    LayerSide side_;
    std::vector<std::uint8_t> boundaries_;  ///< by node, a bit for each of three directions
    std::vector<NodeKind> nodes_;
    std::vector<std::uint32_t> parents_;  ///< of triangles, towards the facet's first one
    std::vector<std::uint8_t> pinches_;   ///< by node
};

}  // namespace zelmo
