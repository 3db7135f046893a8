#include "results/models/surface_triangles.h"

#include <cstddef>
#include <limits>

#include "results/models/triangulation.h"

namespace zelmo {

namespace {

constexpr std::uint32_t unnumbered = std::numeric_limits<std::uint32_t>::max();

/// Calls `visit(col, row)` for all nodes, row by row.
template <typename Visit>
void ForNodes(const LayerArea& area, Visit&& visit) {
    for (std::int32_t row = 0; row < area.Rows(); ++row) {
        for (std::int32_t col = 0; col < area.Cols(); ++col) {
            visit(col, row);
        }
    }
}

/// Whether a touching edge leads from a node to one where it ends. Then a vertex is needed: the
/// solid's parts on the two sides of the edge are told from each other by it alone.
bool LeadsToALoneEnd(const LayerArea& area, std::int32_t col, std::int32_t row) {
    for (int direction = 0; direction < 6; ++direction) {
        const auto& [stepCol, stepRow] = edgeSteps[direction];
        if (IsTouchingEdge(area, col, row, direction) &&
            IsLoneEnd(area, col + stepCol, row + stepRow, (direction + 3) % 6)) {
            return true;
        }
    }
    return false;
}

/// The corners of one surface. Where the layer is not, the other surface's corners count too.
std::vector<std::uint8_t> KeptNodes(const LayerArea& area, const SurfaceFacets& facets,
                                    const SurfaceFacets& others) {
    std::vector<std::uint8_t> kept(area.NodeCount());
    ForNodes(area, [&](std::int32_t col, std::int32_t row) {
        const bool isKept = facets.IsCorner(col, row) ||
                            (facets.IsOnBoundary(col, row) && !area.IsThick(col, row) &&
                             (others.IsCorner(col, row) || LeadsToALoneEnd(area, col, row)));
        kept[area.Node(col, row)] = isKept ? 1 : 0;
    });
    return kept;
}

/// Makes the triangles of one surface. Facets all of whose nodes are kept stay as they are; the
/// others are triangulated anew.
class SurfaceBuilder {
public:
    SurfaceBuilder(const LayerArea& area, LayerSide side, SurfaceFacets& facets,
                   SurfaceTriangles& surface)
        : area_(area), side_(side), facets_(facets), surface_(surface) {}

    void Build() {
        isMerged_.assign(2 * area_.NodeCount(), 0);
        ForNodes(area_, [this](std::int32_t col, std::int32_t row) { MarkAround(col, row); });
        ForNodes(area_, [this](std::int32_t col, std::int32_t row) { AddDrawn(col, row); });
        if (hasMerged_) {
            AddMerged();
        }
    }

private:
    /// Calls `visit(col, row, half)` for the triangles around a node.
    template <typename Visit>
    void ForTrianglesAt(std::int32_t col, std::int32_t row, Visit&& visit) {
        for (const auto& [square, half] : sectorTriangles) {
            if ((area_.Square(col + square.col, row + square.row) & half) != 0) {
                visit(col + square.col, row + square.row, half);
            }
        }
    }

    bool IsKept(std::int32_t col, std::int32_t row) const {
        return surface_.kept[area_.Node(col, row)] != 0;
    }

    bool IsMerged(std::int32_t col, std::int32_t row, std::uint8_t half) {
        return isMerged_[facets_.FacetOf(col, row, half)] != 0;
    }

    /// The facets at a node that is left out lose it.
    void MarkAround(std::int32_t col, std::int32_t row) {
        if (!IsKept(col, row)) {
            ForTrianglesAt(col, row, [this](std::int32_t c, std::int32_t r, std::uint8_t half) {
                isMerged_[facets_.FacetOf(c, r, half)] = 1;
                hasMerged_ = true;
            });
        }
    }

    double Height(std::uint32_t node) const {
        const auto cols = static_cast<std::uint32_t>(area_.Cols());
        return area_.Height(side_, static_cast<std::int32_t>(node % cols),
                            static_cast<std::int32_t>(node / cols));
    }

    /// The triangles of a square, as they are drawn, unless their facets are merged.
    void AddDrawn(std::int32_t col, std::int32_t row) {
        const std::uint8_t square = area_.Square(col, row);
        const auto add = [&](std::uint8_t half, const NodeTriangle& nodes) {
            if ((square & half) == 0) {
                return;
            }
            if (IsMerged(col, row, half)) {
                surface_.volumeChange -=
                    (Height(nodes[0]) + Height(nodes[1]) + Height(nodes[2])) / 6.0;
            } else {
                surface_.triangles.push_back(nodes);
            }
        };
        if (square != 0) {
            const auto node = [&](std::int32_t dCol, std::int32_t dRow) {
                return static_cast<std::uint32_t>(area_.Node(col + dCol, row + dRow));
            };
            add(hasFrontTriangle, {node(0, 0), node(1, 0), node(0, 1)});
            add(hasBackTriangle, {node(1, 0), node(1, 1), node(0, 1)});
        }
    }

    std::uint32_t NumberOf(std::int32_t col, std::int32_t row) {
        std::uint32_t& number = numbers_[area_.Node(col, row)];
        if (number == unnumbered) {
            number = static_cast<std::uint32_t>(graph_.points.size());
            graph_.points.push_back({col, row});
        }
        return number;
    }

    /// Whether a merged facet lies at an edge of a node, on either side.
    bool HasMergedAt(std::int32_t col, std::int32_t row, int direction) {
        for (const int sector : {direction, (direction + 5) % 6}) {
            const auto& [square, half] = sectorTriangles[sector];
            const std::int32_t squareCol = col + square.col;
            const std::int32_t squareRow = row + square.row;
            if ((area_.Square(squareCol, squareRow) & half) != 0 &&
                IsMerged(squareCol, squareRow, half)) {
                return true;
            }
        }
        return false;
    }

    /// Adds the boundary from a kept node in a direction up to the next one.
    void AddEdge(std::int32_t col, std::int32_t row, int direction) {
        if (!facets_.IsBoundary(col, row, direction) || !HasMergedAt(col, row, direction)) {
            return;
        }
        std::int32_t endCol = col;
        std::int32_t endRow = row;
        do {
            endCol += edgeSteps[direction].col;
            endRow += edgeSteps[direction].row;
        } while (!IsKept(endCol, endRow));
        graph_.edges.push_back({NumberOf(col, row), NumberOf(endCol, endRow)});
    }

    /// Triangulates the merged facets all together.
    void AddMerged() {
        numbers_.assign(area_.NodeCount(), unnumbered);
        const std::int32_t lastCol = area_.Cols() - 1;
        const std::int32_t lastRow = area_.Rows() - 1;
        for (const auto& [col, row] :
             {GridStep{0, 0}, {lastCol, 0}, {lastCol, lastRow}, {0, lastRow}}) {
            NumberOf(col, row);
        }
        ForNodes(area_, [this](std::int32_t col, std::int32_t row) {
            for (int direction = 0; direction < 3 && IsKept(col, row); ++direction) {
                AddEdge(col, row, direction);
            }
        });
        for (const PlaneTriangle& triangle : Triangulate(graph_)) {
            AddIfMerged(triangle);
        }
    }

    /// Adds a triangle of the plane if it belongs to a merged facet.
    void AddIfMerged(const PlaneTriangle& triangle) {
        NodeTriangle nodes{};
        std::int64_t x = 0;  // of the centre, in thirds
        std::int64_t y = 0;
        for (std::size_t i = 0; i < 3; ++i) {
            const PlanePoint& point = graph_.points[triangle[i]];
            nodes[i] = static_cast<std::uint32_t>(area_.Node(point.x, point.y));
            x += point.x;
            y += point.y;
        }
        const auto col = static_cast<std::int32_t>(x / 3);
        const auto row = static_cast<std::int32_t>(y / 3);
        const std::uint8_t half = x % 3 + y % 3 <= 3 ? hasFrontTriangle : hasBackTriangle;
        if ((area_.Square(col, row) & half) != 0 && IsMerged(col, row, half)) {
            const auto& points = graph_.points;
            const PlanePoint& a = points[triangle[0]];
            const PlanePoint& b = points[triangle[1]];
            const PlanePoint& c = points[triangle[2]];
            const auto twiceArea =
                static_cast<double>((std::int64_t{b.x} - a.x) * (std::int64_t{c.y} - a.y) -
                                    (std::int64_t{b.y} - a.y) * (std::int64_t{c.x} - a.x));
            surface_.volumeChange +=
                twiceArea * (Height(nodes[0]) + Height(nodes[1]) + Height(nodes[2])) / 6.0;
            surface_.triangles.push_back(nodes);
        }
    }

    const LayerArea& area_;
    LayerSide side_;
    SurfaceFacets& facets_;
    SurfaceTriangles& surface_;
    std::vector<std::uint8_t> isMerged_;  ///< by facet
    bool hasMerged_ = false;
    PlaneGraph graph_;
    std::vector<std::uint32_t> numbers_;  ///< of the graph's points, by node
};

}  // namespace

LayerSurfaces TriangulateSurfaces(const LayerArea& area, double bound) {
    SurfaceFacets bottom(area, LayerSide::Bottom, bound);
    SurfaceFacets top(area, LayerSide::Top, bound);
    LayerSurfaces surfaces;
    surfaces.bottom.kept = KeptNodes(area, bottom, top);
    surfaces.top.kept = KeptNodes(area, top, bottom);
    SurfaceBuilder(area, LayerSide::Bottom, bottom, surfaces.bottom).Build();
    SurfaceBuilder(area, LayerSide::Top, top, surfaces.top).Build();
    return surfaces;
}

}  // namespace zelmo
