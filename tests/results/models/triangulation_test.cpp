#include "results/models/triangulation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <map>
#include <utility>

#include "results/models/plane_predicates.h"
#include "tests/model/grid_model.h"

namespace zelmo {
namespace {

bool Meet(const PlaneGraph& graph, const std::array<std::uint32_t, 2>& first,
          const std::array<std::uint32_t, 2>& second) {
    const auto& points = graph.points;
    const auto turn = [&](std::uint32_t a, std::uint32_t b, std::uint32_t c) {
        const std::int64_t area = TwiceArea(points[a], points[b], points[c]);
        return area > 0 ? 1 : area < 0 ? -1 : 0;
    };
    return turn(first[0], first[1], second[0]) * turn(first[0], first[1], second[1]) < 0 &&
           turn(second[0], second[1], first[0]) * turn(second[0], second[1], first[1]) < 0;
}

bool HoldsAPoint(const PlaneGraph& graph, const std::array<std::uint32_t, 2>& edge) {
    const PlanePoint& from = graph.points[edge[0]];
    const PlanePoint& to = graph.points[edge[1]];
    return std::any_of(graph.points.begin(), graph.points.end(), [&](const PlanePoint& point) {
        return point != from && point != to && TwiceArea(from, to, point) == 0 &&
               point.x >= std::min(from.x, to.x) && point.x <= std::max(from.x, to.x) &&
               point.y >= std::min(from.y, to.y) && point.y <= std::max(from.y, to.y);
    });
}

/// Random points of a small rectangle, many on its sides, and random edges that are allowed.
PlaneGraph RandomGraph(TestRandom& random) {
    const auto width = static_cast<std::int32_t>(1 + random.Below(14));
    const auto height = static_cast<std::int32_t>(1 + random.Below(14));
    PlaneGraph graph{{{0, 0}, {width, 0}, {width, height}, {0, height}}, {}};
    const std::uint32_t count = random.Below(60);
    for (std::uint32_t i = 0; i < count; ++i) {
        const PlanePoint point{
            static_cast<std::int32_t>(random.Below(static_cast<std::uint32_t>(width) + 1)),
            static_cast<std::int32_t>(random.Below(static_cast<std::uint32_t>(height) + 1))};
        if (std::find(graph.points.begin(), graph.points.end(), point) == graph.points.end()) {
            graph.points.push_back(point);
        }
    }
    const auto size = static_cast<std::uint32_t>(graph.points.size());
    for (std::uint32_t i = 0; i < 3 * size; ++i) {
        const std::array<std::uint32_t, 2> edge{random.Below(size), random.Below(size)};
        const bool isFree =
            std::none_of(graph.edges.begin(), graph.edges.end(),
                         [&](const auto& other) { return Meet(graph, edge, other); });
        if (edge[0] != edge[1] && isFree && !HoldsAPoint(graph, edge)) {
            graph.edges.push_back(edge);
        }
    }
    return graph;
}

using Ends = std::pair<std::uint32_t, std::uint32_t>;

/// The triangles' edges, each with the corner on its left.
std::map<Ends, std::uint32_t> EdgesOf(const std::vector<PlaneTriangle>& triangles) {
    std::map<Ends, std::uint32_t> edges;
    for (const PlaneTriangle& corners : triangles) {
        for (std::size_t i = 0; i < 3; ++i) {
            const Ends ends{corners[i], corners[(i + 1) % 3]};
            EXPECT_TRUE(edges.emplace(ends, corners[(i + 2) % 3]).second);
        }
    }
    return edges;
}

TEST(Triangulate, HasAllPointsAndEdgesAndCoversTheRectangleOnce) {
    TestRandom random(14);
    for (int round = 0; round < 400; ++round) {
        const PlaneGraph graph = RandomGraph(random);
        const std::vector<PlaneTriangle> triangles = Triangulate(graph);
        std::vector<bool> isUsed(graph.points.size());
        std::int64_t area = 0;
        for (const PlaneTriangle& corners : triangles) {
            const std::int64_t own = TwiceArea(graph.points[corners[0]], graph.points[corners[1]],
                                               graph.points[corners[2]]);
            ASSERT_GT(own, 0);
            area += own;
            for (const std::uint32_t corner : corners) {
                isUsed[corner] = true;
            }
        }
        const PlanePoint& far = graph.points[2];
        ASSERT_EQ(area, std::int64_t{2} * far.x * far.y);
        ASSERT_EQ(std::count(isUsed.begin(), isUsed.end(), false), 0);
        const auto edges = EdgesOf(triangles);
        for (const auto& [from, to] : graph.edges) {
            ASSERT_TRUE(edges.contains({from, to}) || edges.contains({to, from})) << round;
        }
    }
}

TEST(Triangulate, HasNoPointInTheCircleAcrossAnEdgeThatIsNotRequired) {
    TestRandom random(15);
    int looked = 0;
    for (int round = 0; round < 300; ++round) {
        const PlaneGraph graph = RandomGraph(random);
        const auto edges = EdgesOf(Triangulate(graph));
        for (const auto& [ends, left] : edges) {
            const auto& [from, to] = ends;
            const auto back = edges.find({to, from});
            const bool isRequired =
                std::any_of(graph.edges.begin(), graph.edges.end(), [&](const auto& edge) {
                    return (edge[0] == from && edge[1] == to) || (edge[0] == to && edge[1] == from);
                });
            if (back != edges.end() && !isRequired) {
                ++looked;
                ASSERT_FALSE(LiesInCircle(graph.points[from], graph.points[to], graph.points[left],
                                          graph.points[back->second]))
                    << round;
            }
        }
    }
    EXPECT_GT(looked, 1000);
}

TEST(Triangulate, HoldsForLargeCoordinates) {
    constexpr std::int32_t width = 500'000'000;
    const PlaneGraph graph{{{0, 0}, {width, 0}, {width, 3}, {0, 3}, {width / 2, 1}, {7, 2}},
                           {{4, 1}, {5, 2}}};
    const auto edges = EdgesOf(Triangulate(graph));
    EXPECT_TRUE(edges.contains({4, 1}));
    EXPECT_TRUE(edges.contains({5, 2}));
}

}  // namespace
}  // namespace zelmo
