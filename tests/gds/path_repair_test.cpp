#include "gds/path_repair.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <random>
#include <utility>
#include <vector>

// What paths mean that ExpandPath refuses.

namespace zelmo {
namespace {

using Points = std::vector<GdsPoint>;
using Outlines = std::vector<Points>;

RepairedPath Repair(const Points& points, std::int32_t width, std::uint16_t type = 0,
                    const PathExtensions& extensions = {}) {
    return RepairPath({points, width, type, type == extendedEnds, extensions});
}

/// The outline that ExpandPath gives, or no points where it refuses.
Points Expanded(const Points& points, std::uint32_t width, std::uint16_t type = 0) {
    Points out(2 * points.size() + 1);
    return ExpandPath(out, points, width, type) ? out : Points();
}

void ExpectFaults(const RepairedPath& path, const PathFaults& faults) {
    EXPECT_EQ(path.faults.repeatedPoints, faults.repeatedPoints);
    EXPECT_EQ(path.faults.collinearPoints, faults.collinearPoints);
    EXPECT_EQ(path.faults.refusedEnds, faults.refusedEnds);
    EXPECT_EQ(path.faults.noLength, faults.noLength);
}

TEST(RepairPath, ARepeatedPointCountsOnce) {
    const Points clean{{0, 0}, {100, 0}, {100, 70}};
    for (const std::uint16_t type : {0, 2}) {
        const RepairedPath path =
            Repair({{0, 0}, {0, 0}, {0, 0}, {100, 0}, {100, 0}, {100, 70}, {100, 70}}, 10, type);
        EXPECT_EQ(path.outlines, Outlines{Expanded(clean, 10, type)});
        ExpectFaults(path, {.repeatedPoints = true});
    }
}

TEST(RepairPath, APointOnTheWayChangesNothing) {
    const Points clean{{0, 0}, {100, 0}, {100, 70}};
    for (const std::uint16_t type : {0, 2}) {
        const RepairedPath path =
            Repair({{0, 0}, {1, 0}, {99, 0}, {100, 0}, {100, 35}, {100, 70}}, 10, type);
        EXPECT_EQ(path.outlines, Outlines{Expanded(clean, 10, type)});
        ExpectFaults(path, {.collinearPoints = true});
    }
}

TEST(RepairPath, ALineOfPointsInOneDirectionIsOneSegment) {
    EXPECT_EQ(Repair({{0, 0}, {30, 30}, {60, 60}, {100, 100}}, 10).outlines,
              Outlines{Expanded({{0, 0}, {100, 100}}, 10)});
}

TEST(RepairPath, RefusedEndsAreExtendedLikeAllOthers) {
    const Points refused{{7, 1}, {7, 7}};
    ASSERT_TRUE(Expanded(refused, 10, 2).empty());
    const RepairedPath path = Repair(refused, 10, 2);
    EXPECT_EQ(path.outlines, (Outlines{{{2, -4}, {2, 12}, {12, 12}, {12, -4}, {2, -4}}}));
    ExpectFaults(path, {.refusedEnds = true});
    // The other end.
    const RepairedPath back = Repair({{7, 7}, {7, 1}}, 10, 2);
    EXPECT_EQ(back.outlines, (Outlines{{{12, 12}, {12, -4}, {2, -4}, {2, 12}, {12, 12}}}));
    ExpectFaults(back, {.refusedEnds = true});
}

TEST(RepairPath, EndsAreToldOnlyOfAPathWhoseEndsWereTested) {
    ExpectFaults(Repair({{7, 1}, {7, 1}, {7, 7}}, 10, 0), {.repeatedPoints = true});
    ExpectFaults(Repair({{7, 1}, {7, 1}, {7, 7}}, 10, 2),
                 {.repeatedPoints = true, .refusedEnds = true});
}

TEST(RepairPath, APathThatFoldsBackEndsHalfAWidthBeyondAndBeginsAnew) {
    const RepairedPath path = Repair({{0, 0}, {100, 0}, {40, 0}}, 10);
    EXPECT_EQ(path.outlines, (Outlines{{{0, 5}, {105, 5}, {105, -5}, {0, -5}, {0, 5}},
                                       {{105, -5}, {40, -5}, {40, 5}, {105, 5}, {105, -5}}}));
    ExpectFaults(path, {.collinearPoints = true});
}

TEST(RepairPath, TheEndsOfAFoldedPathAreThoseOfItsType) {
    const RepairedPath path = Repair({{0, 0}, {100, 0}, {-40, 0}, {-40, 50}}, 10, 2);
    ASSERT_EQ(path.outlines.size(), 2u);
    EXPECT_EQ(path.outlines[0], (Points{{-5, 5}, {105, 5}, {105, -5}, {-5, -5}, {-5, 5}}));
    EXPECT_EQ(path.outlines[1],
              (Points{{105, -5}, {-45, -5}, {-45, 55}, {-35, 55}, {-35, 5}, {105, 5}, {105, -5}}));
}

TEST(RepairPath, APathThatGoesBackAndForthHasAnOutlineForEachWay) {
    EXPECT_EQ(Repair({{0, 0}, {100, 0}, {0, 0}, {100, 0}}, 10).outlines.size(), 3u);
}

TEST(RepairPath, RoundEndsAreHalfCircles) {
    const RepairedPath path = Repair({{0, 0}, {0, 0}, {1000, 0}}, 200, roundEnds);
    ASSERT_EQ(path.outlines.size(), 1u);
    const Points& outline = path.outlines[0];
    ASSERT_EQ(outline.size(), 5u + 2 * 15u);
    EXPECT_EQ(outline[0], (GdsPoint{0, 100}));
    EXPECT_EQ(outline[1], (GdsPoint{1000, 100}));
    EXPECT_EQ(outline[9], (GdsPoint{1100, 0}));
    EXPECT_EQ(outline[17], (GdsPoint{1000, -100}));
    EXPECT_EQ(outline[18], (GdsPoint{0, -100}));
    EXPECT_EQ(outline[26], (GdsPoint{-100, 0}));
    EXPECT_EQ(outline.front(), outline.back());
    for (const GdsPoint point : outline) {
        const auto x = static_cast<double>(point.x < 500 ? point.x : point.x - 1000);
        EXPECT_NEAR(std::hypot(x, static_cast<double>(point.y)), 100.0, 1.5);
    }
}

TEST(RepairPath, VariableEndsReachAsFarAsThePathSays) {
    const Points points{{0, 0}, {50, 0}, {100, 0}};
    EXPECT_EQ(Repair(points, 10, variableEnds, {20.0, -30.0}).outlines,
              (Outlines{{{-20, 5}, {70, 5}, {70, -5}, {-20, -5}, {-20, 5}}}));
    // Of another type they say nothing.
    EXPECT_EQ(Repair(points, 10, 0, {20.0, -30.0}).outlines,
              Outlines{Expanded({{0, 0}, {100, 0}}, 10)});
}

TEST(RepairPath, OtherTypesHaveFlushEnds) {
    for (const std::uint16_t type : {3, 5, 65535}) {
        EXPECT_EQ(Repair({{0, 0}, {50, 0}, {100, 0}}, 10, type).outlines,
                  Outlines{Expanded({{0, 0}, {100, 0}}, 10)});
    }
}

TEST(RepairPath, TheMagnitudeOfAWidthCounts) {
    const Points points{{0, 0}, {50, 0}, {100, 0}};
    EXPECT_EQ(Repair(points, -10).outlines, Repair(points, 10).outlines);
    EXPECT_EQ(Repair(points, INT32_MIN).outlines.size(), 1u);
}

TEST(RepairPath, WithoutLengthOnlyEndsRemain) {
    const Points once{{10, 20}};
    const Points twice{{10, 20}, {10, 20}};
    EXPECT_EQ(Repair(twice, 10, 2).outlines,
              (Outlines{{{5, 25}, {15, 25}, {15, 15}, {5, 15}, {5, 25}}}));
    EXPECT_EQ(Repair(once, 10, 2).outlines, Repair(twice, 10, 2).outlines);
    EXPECT_EQ(Repair(once, 10, 4, {0.0, 7.0}).outlines,
              (Outlines{{{10, 25}, {17, 25}, {17, 15}, {10, 15}, {10, 25}}}));
    EXPECT_TRUE(Repair(once, 10, 0).outlines.empty());
    EXPECT_TRUE(Repair(once, 10, 4, {5.0, -5.0}).outlines.empty());
    for (const std::uint16_t type : {0, 1, 2}) {
        EXPECT_TRUE(Repair(once, 0, type).outlines.empty()) << type;
    }
    ExpectFaults(Repair(once, 10, 2), {.noLength = true});
    ExpectFaults(Repair(twice, 10, 2), {.repeatedPoints = true, .noLength = true});
}

TEST(RepairPath, ARoundDotIsACircle) {
    const RepairedPath path = Repair({{1000, 2000}}, 400, roundEnds);
    ASSERT_EQ(path.outlines.size(), 1u);
    const Points& circle = path.outlines[0];
    EXPECT_EQ(circle.size(), 33u);
    EXPECT_EQ(circle.front(), circle.back());
    EXPECT_EQ(circle[8], (GdsPoint{1200, 2000}));
    EXPECT_EQ(circle[24], (GdsPoint{800, 2000}));
    for (const GdsPoint point : circle) {
        EXPECT_NEAR(
            std::hypot(static_cast<double>(point.x - 1000), static_cast<double>(point.y - 2000)),
            200.0, 1.5);
    }
}

/// A path of segments along the axes, of even length, that ExpandPath takes.
Points RandomPath(std::mt19937& random) {
    // Far from where an x could be a y.
    GdsPoint at{1000000 + static_cast<std::int64_t>(random() % 1000), 0};
    Points points{at};
    for (std::uint32_t n = 1 + random() % 6, i = 0; i < n; ++i) {
        const std::int64_t step = 2 * (1 + static_cast<std::int64_t>(random() % 500));
        const std::int64_t way = random() % 2 == 0 ? step : -step;
        (i % 2 == 0 ? at.x : at.y) += way;
        points.push_back(at);
    }
    return points;
}

/// The same with repeated points, and points halfway.
Points WithMorePoints(const Points& points, std::mt19937& random) {
    Points more;
    for (std::size_t i = 0; i < points.size(); ++i) {
        more.insert(more.end(), 1 + random() % 3, points[i]);
        if (i + 1 < points.size() && random() % 2 == 0) {
            more.push_back(
                {(points[i].x + points[i + 1].x) / 2, (points[i].y + points[i + 1].y) / 2});
        }
    }
    return more;
}

TEST(RepairPath, GivesTheOutlineOfTheSamePathDrawnWithoutFault) {
    std::mt19937 random(81);
    for (int run = 0; run < 2000; ++run) {
        const Points clean = RandomPath(random);
        const std::uint16_t type = random() % 2 == 0 ? 0 : 2;
        const auto width = static_cast<std::int32_t>(random() % 300);
        const Points expected = Expanded(clean, static_cast<std::uint32_t>(width), type);
        ASSERT_FALSE(expected.empty());
        ASSERT_EQ(Repair(WithMorePoints(clean, random), width, type).outlines, Outlines{expected})
            << run;
    }
}

TEST(RepairPath, ExtendsRefusedEndsAsThoseOfTheSamePathElsewhere) {
    std::mt19937 random(82);
    for (int run = 0; run < 1000; ++run) {
        Points elsewhere = RandomPath(random);
        for (GdsPoint& point : elsewhere) {
            std::swap(point.x, point.y);  // its first segment goes along y
        }
        // Even, so that nothing is cut off.
        const auto width = static_cast<std::int32_t>(2 * (random() % 150));
        Points expected = Expanded(elsewhere, static_cast<std::uint32_t>(width), 2);
        ASSERT_FALSE(expected.empty());
        const GdsPoint way{elsewhere[1].y - elsewhere[1].x, 0};
        for (Points* points : {&elsewhere, &expected}) {
            for (GdsPoint& point : *points) {
                point.x += way.x;
            }
        }
        ASSERT_TRUE(Expanded(elsewhere, static_cast<std::uint32_t>(width), 2).empty());
        ASSERT_EQ(Repair(elsewhere, width, 2).outlines, Outlines{expected}) << run;
    }
}

}  // namespace
}  // namespace zelmo
