#include "results/models/triangulation.h"

#include <cstddef>
#include <deque>
#include <limits>
#include <utility>

#include "results/models/plane_predicates.h"

// Points are inserted one by one, and edges flipped until no circle holds a point (Lawson). Edges
// that are required and not there come by flips of those that they cross (Sloan).

namespace zelmo {

namespace {

using Index = std::uint32_t;
constexpr Index none = std::numeric_limits<Index>::max();

/// What lies across an edge of a triangle.
struct Side {
    Index neighbour = none;
    bool isFixed = false;  ///< the edge is required
};

/// A triangle, counter-clockwise. Side i runs from corner i to the next one.
struct Triangle {
    std::array<Index, 3> corners{};
    std::array<Side, 3> sides{};
};

/// A side of a triangle.
struct Edge {
    Index triangle = none;
    unsigned side = 0;
};

constexpr unsigned Next(unsigned side) {
    return side == 2 ? 0 : side + 1;
}
constexpr unsigned Before(unsigned side) {
    return side == 0 ? 2 : side - 1;
}

class Triangulation {
public:
    explicit Triangulation(const PlaneGraph& graph) : points_(graph.points) {
        touching_.assign(points_.size(), none);
        triangles_.reserve(2 * points_.size());
        triangles_.resize(2);
        Set(0, {0, 1, 2}, {Side{}, Side{}, Side{1, false}});
        Set(1, {0, 2, 3}, {Side{0, false}, Side{}, Side{}});
        for (const Index point : InsertionOrder(points_)) {
            if (point > 3) {
                Insert(point);
            }
        }
        for (const auto& [from, to] : graph.edges) {
            Require(from, to);
        }
    }

    std::vector<PlaneTriangle> Triangles() const {
        std::vector<PlaneTriangle> corners;
        corners.reserve(triangles_.size());
        for (const Triangle& triangle : triangles_) {
            corners.push_back(triangle.corners);
        }
        return corners;
    }

private:
    std::int64_t Turn(Index a, Index b, Index c) const {
        return TwiceArea(points_[a], points_[b], points_[c]);
    }

    void Set(Index triangle, const std::array<Index, 3>& corners,
             const std::array<Side, 3>& sides) {
        triangles_[triangle] = {corners, sides};
        for (const Index corner : corners) {
            touching_[corner] = triangle;
        }
    }

    /// The side of a triangle that lies before a neighbour.
    unsigned SideTowards(Index triangle, Index neighbour) const {
        const auto& sides = triangles_[triangle].sides;
        return sides[0].neighbour == neighbour ? 0 : sides[1].neighbour == neighbour ? 1 : 2;
    }

    /// Tells a neighbour that another triangle lies beside it now.
    void Retarget(const Side& side, Index from, Index to) {
        if (side.neighbour != none) {
            triangles_[side.neighbour].sides[SideTowards(side.neighbour, from)].neighbour = to;
        }
    }

    /// A triangle that holds a point, and, where the point is on its edge, that side; else side 3.
    Edge Locate(Index point) {
        for (unsigned first = 0;; first = Next(first)) {
            const Triangle& triangle = triangles_[last_];
            unsigned on = 3;
            Index next = none;
            for (unsigned i = 0, side = first; i < 3 && next == none; ++i, side = Next(side)) {
                const std::int64_t turn =
                    Turn(triangle.corners[side], triangle.corners[Next(side)], point);
                if (turn < 0) {
                    next = triangle.sides[side].neighbour;
                } else if (turn == 0) {
                    on = side;
                }
            }
            if (next == none) {
                return {last_, on};
            }
            last_ = next;
        }
    }

    void Insert(Index point) {
        const Edge place = Locate(point);
        if (place.side == 3) {
            SplitTriangle(place.triangle, point);
        } else {
            SplitEdge(place, point);
        }
        // All new triangles have the point as their last corner.
        while (!doubtful_.empty()) {
            const Edge edge = doubtful_.back();
            doubtful_.pop_back();
            if (IsToBeFlipped(edge)) {
                const Index other = triangles_[edge.triangle].sides[edge.side].neighbour;
                Flip(edge);
                doubtful_.push_back({edge.triangle, 0});
                doubtful_.push_back({other, 0});
            }
        }
    }

    void SplitTriangle(Index t, Index point) {
        const auto [a, b, c] = triangles_[t].corners;
        const auto [ab, bc, ca] = triangles_[t].sides;
        const Index t1 = Append();
        const Index t2 = Append();
        Set(t, {a, b, point}, {ab, Side{t1, false}, Side{t2, false}});
        Set(t1, {b, c, point}, {bc, Side{t2, false}, Side{t, false}});
        Set(t2, {c, a, point}, {ca, Side{t, false}, Side{t1, false}});
        Retarget(bc, t, t1);
        Retarget(ca, t, t2);
        doubtful_ = {{t, 0}, {t1, 0}, {t2, 0}};
    }

    /// Splits the one or two triangles at an edge.
    void SplitEdge(const Edge& edge, Index point) {
        const Index t = edge.triangle;
        const Triangle old = triangles_[t];
        const Index a = old.corners[edge.side];
        const Index b = old.corners[Next(edge.side)];
        const Index c = old.corners[Before(edge.side)];
        const Side bc = old.sides[Next(edge.side)];
        const Side ca = old.sides[Before(edge.side)];
        const Index u = old.sides[edge.side].neighbour;
        const unsigned back = u != none ? SideTowards(u, t) : 0;
        const Index t1 = Append();
        const Index u1 = u != none ? Append() : none;
        Set(t, {c, a, point}, {ca, Side{u1, false}, Side{t1, false}});
        Set(t1, {b, c, point}, {bc, Side{t, false}, Side{u, false}});
        Retarget(bc, t, t1);
        doubtful_ = {{t, 0}, {t1, 0}};
        if (u != none) {
            const Triangle other = triangles_[u];
            const Index d = other.corners[Before(back)];
            const Side ad = other.sides[Next(back)];
            const Side db = other.sides[Before(back)];
            Set(u, {d, b, point}, {db, Side{t1, false}, Side{u1, false}});
            Set(u1, {a, d, point}, {ad, Side{u, false}, Side{t, false}});
            Retarget(ad, u, u1);
            doubtful_.push_back({u, 0});
            doubtful_.push_back({u1, 0});
        }
    }

    Index Append() {
        triangles_.emplace_back();
        return static_cast<Index>(triangles_.size() - 1);
    }

    /// The corner beyond an edge that has a triangle there.
    Index Beyond(const Edge& edge) const {
        const Index other = triangles_[edge.triangle].sides[edge.side].neighbour;
        return triangles_[other].corners[Before(SideTowards(other, edge.triangle))];
    }

    bool IsToBeFlipped(const Edge& edge) const {
        const Triangle& triangle = triangles_[edge.triangle];
        const Side& side = triangle.sides[edge.side];
        return side.neighbour != none && !side.isFixed &&
               LiesInCircle(points_[triangle.corners[0]], points_[triangle.corners[1]],
                            points_[triangle.corners[2]], points_[Beyond(edge)]);
    }

    /// Replaces the edge between two triangles by the other diagonal of their quadrilateral. The
    /// edge's first triangle gets its first corner, the other one its second corner; the last
    /// corner of both is the one that was across the edge.
    void Flip(const Edge& edge) {
        const Index t = edge.triangle;
        const Triangle old = triangles_[t];
        const Index u = old.sides[edge.side].neighbour;
        const unsigned back = SideTowards(u, t);
        const Triangle other = triangles_[u];
        const Index a = old.corners[edge.side];
        const Index b = old.corners[Next(edge.side)];
        const Index c = old.corners[Before(edge.side)];
        const Index d = other.corners[Before(back)];
        const Side bc = old.sides[Next(edge.side)];
        const Side ca = old.sides[Before(edge.side)];
        const Side ad = other.sides[Next(back)];
        const Side db = other.sides[Before(back)];
        Set(t, {a, d, c}, {ad, Side{u, false}, ca});
        Set(u, {d, b, c}, {db, bc, Side{t, false}});
        Retarget(ad, u, t);
        Retarget(bc, t, u);
    }

    /// Makes an edge between two points one that stays.
    void Require(Index from, Index to) {
        Edge edge = Find(from, to);
        if (edge.triangle == none) {
            FlipAcross(from, to);
            edge = Find(from, to);
        }
        Side& side = triangles_[edge.triangle].sides[edge.side];
        side.isFixed = true;
        if (side.neighbour != none) {
            triangles_[side.neighbour].sides[SideTowards(side.neighbour, edge.triangle)].isFixed =
                true;
        }
        SettleNewEdges();
    }

    /// Calls `visit(triangle, side)` for the triangles around a point, each with the side that
    /// begins there, until it answers true; the answer.
    template <typename Visit>
    bool VisitAround(Index point, Visit&& visit) const {
        const Index first = touching_[point];
        const auto sideFrom = [&](Index triangle) {
            const auto& corners = triangles_[triangle].corners;
            return corners[0] == point ? 0u : corners[1] == point ? 1u : 2u;
        };
        Index triangle = first;
        do {
            const unsigned side = sideFrom(triangle);
            if (visit(triangle, side)) {
                return true;
            }
            triangle = triangles_[triangle].sides[Before(side)].neighbour;
        } while (triangle != none && triangle != first);
        // Up to an outer edge: the others lie on the other side.
        for (Index other = first; triangle == none;) {
            other = triangles_[other].sides[sideFrom(other)].neighbour;
            if (other == none) {
                break;
            }
            if (visit(other, sideFrom(other))) {
                return true;
            }
        }
        return false;
    }

    /// The edge between two points, seen from one of its sides; no triangle if it is not there.
    Edge Find(Index from, Index to) const {
        Edge edge;
        VisitAround(from, [&](Index triangle, unsigned side) {
            const auto& corners = triangles_[triangle].corners;
            if (corners[Next(side)] == to) {
                edge = {triangle, side};
            } else if (corners[Before(side)] == to) {
                edge = {triangle, Before(side)};
            }
            return edge.triangle != none;
        });
        return edge;
    }

    using Ends = std::pair<Index, Index>;

    /// The edges that the way between two points crosses, in their order.
    std::deque<Ends> Crossed(Index from, Index to) const {
        Edge edge;
        VisitAround(from, [&](Index triangle, unsigned side) {
            const auto& corners = triangles_[triangle].corners;
            if (Turn(from, corners[Next(side)], to) > 0 &&
                Turn(from, corners[Before(side)], to) < 0) {
                edge = {triangle, Next(side)};
            }
            return edge.triangle != none;
        });
        std::deque<Ends> crossed;
        while (edge.triangle != none) {
            const Triangle& triangle = triangles_[edge.triangle];
            crossed.emplace_back(triangle.corners[edge.side], triangle.corners[Next(edge.side)]);
            const Index other = triangle.sides[edge.side].neighbour;
            const unsigned back = SideTowards(other, edge.triangle);
            const Index apex = triangles_[other].corners[Before(back)];
            if (apex == to) {
                break;
            }
            // On the left of the way the edge behind the apex is crossed next, on the right the
            // one before it.
            edge = {other, Turn(from, to, apex) > 0 ? Next(back) : Before(back)};
        }
        return crossed;
    }

    void FlipAcross(Index from, Index to) {
        std::deque<Ends> crossed = Crossed(from, to);
        while (!crossed.empty()) {
            const Ends ends = crossed.front();
            crossed.pop_front();
            const Edge edge = Find(ends.first, ends.second);
            const Triangle& triangle = triangles_[edge.triangle];
            const Index a = triangle.corners[edge.side];
            const Index b = triangle.corners[Next(edge.side)];
            const Index c = triangle.corners[Before(edge.side)];
            const Index d = Beyond(edge);
            if (Turn(c, d, a) >= 0 || Turn(c, d, b) <= 0) {
                crossed.push_back(ends);  // the other diagonal would lie outside
                continue;
            }
            Flip(edge);
            const bool touches = c == from || c == to || d == from || d == to;
            const bool crosses = !touches && (Turn(from, to, c) > 0) != (Turn(from, to, d) > 0);
            if (crosses) {
                crossed.emplace_back(c, d);
            } else {
                flipped_.emplace_back(c, d);
            }
        }
    }

    /// Flips what came by a required edge until no circle holds a point.
    void SettleNewEdges() {
        while (!flipped_.empty()) {
            const auto [from, to] = flipped_.back();
            flipped_.pop_back();
            const Edge edge = Find(from, to);
            if (edge.triangle == none || !IsToBeFlipped(edge)) {
                continue;
            }
            const Triangle& triangle = triangles_[edge.triangle];
            const std::array<Index, 4> around{triangle.corners[edge.side], Beyond(edge),
                                              triangle.corners[Next(edge.side)],
                                              triangle.corners[Before(edge.side)]};
            Flip(edge);
            for (std::size_t i = 0; i < around.size(); ++i) {
                flipped_.emplace_back(around[i], around[(i + 1) % around.size()]);
            }
        }
    }

    const std::vector<PlanePoint>& points_;
    std::vector<Triangle> triangles_;
    std::vector<Index> touching_;  ///< a triangle of each point
    std::vector<Edge> doubtful_;   ///< edges to be looked at again
    std::vector<Ends> flipped_;
    Index last_ = 0;  ///< the triangle where a point was found last
};

}  // namespace

std::vector<PlaneTriangle> Triangulate(const PlaneGraph& graph) {
    return Triangulation(graph).Triangles();
}

}  // namespace zelmo
