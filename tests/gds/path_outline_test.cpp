#include "gds/path_outline.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <vector>

#include "tests/gds/random_layout.h"
#include "tests/plain/gds_plain.h"

namespace zelmo {
namespace {

using Points = std::vector<GdsPoint>;

/// The outline, or no points if the path is refused.
Points Outline(const Points& points, std::uint32_t width, std::uint16_t pathType = 0) {
    Points out(2 * points.size() + 1);
    return ExpandPath(out, points, width, pathType) ? out : Points();
}

TEST(ExpandPath, SurroundsTheCentreLine) {
    EXPECT_EQ(Outline({{0, 0}, {100, 0}}, 10),
              (Points{{0, 5}, {100, 5}, {100, -5}, {0, -5}, {0, 5}}));
}

TEST(ExpandPath, ExtendsTheEndsOfType2ByHalfTheWidth) {
    EXPECT_EQ(Outline({{0, 0}, {100, 0}}, 10, 2),
              (Points{{-5, 5}, {105, 5}, {105, -5}, {-5, -5}, {-5, 5}}));
}

TEST(ExpandPath, ExtendsNoOtherType) {
    const Points flush = Outline({{0, 0}, {100, 0}}, 10, 0);
    for (const std::uint16_t type : {1, 3, 4, 65535}) {
        EXPECT_EQ(Outline({{0, 0}, {100, 0}}, 10, type), flush) << type;
    }
}

TEST(ExpandPath, PutsTheLeftSideOfTheDirectionOfTravelFirst) {
    EXPECT_EQ(Outline({{0, 0}, {0, 100}}, 10),
              (Points{{-5, 0}, {-5, 100}, {5, 100}, {5, 0}, {-5, 0}}));
}

TEST(ExpandPath, LaysBothSidesOfAPathWithoutWidthOnTheCentreLine) {
    EXPECT_EQ(Outline({{0, 0}, {100, 0}, {100, 50}}, 0),
              (Points{{0, 0}, {100, 0}, {100, 50}, {100, 50}, {100, 0}, {0, 0}, {0, 0}}));
}

TEST(ExpandPath, MitresARightAngleOntoTheOffsetCorner) {
    EXPECT_EQ(Outline({{0, 0}, {100, 0}, {100, 100}}, 10),
              (Points{{0, 5}, {95, 5}, {95, 100}, {105, 100}, {105, -5}, {0, -5}, {0, 5}}));
}

TEST(ExpandPath, DrawsASharpCornerToASpikeWithoutLimit) {
    const Points outline = Outline({{0, 0}, {10000, 0}, {0, 10}}, 100);
    ASSERT_EQ(outline.size(), 7u);
    // On the outer side the offset lines meet about 100000 units behind the corner.
    EXPECT_GT(outline[4].x, 100000);
    EXPECT_EQ(outline[4].y, -50);
}

TEST(ExpandPath, HalvesAnOddWidthAndTruncatesTowardZero) {
    EXPECT_EQ(Outline({{0, 0}, {100, 0}}, 5),
              (Points{{0, 2}, {100, 2}, {100, -2}, {0, -2}, {0, 2}}));
    EXPECT_EQ(Outline({{0, 10}, {100, 10}}, 5),
              (Points{{0, 12}, {100, 12}, {100, 7}, {0, 7}, {0, 12}}));
}

TEST(ExpandPath, TruncatesTheExtensionOfAnObliqueEnd) {
    // Half the width is 5 along (3, 4) / 5: (3, 4). With 4.5 it is (2.7, 3.6), cut to (2, 3).
    const Points whole = Outline({{0, 0}, {30, 40}}, 10, 2);
    ASSERT_EQ(whole.size(), 5u);
    EXPECT_EQ(whole[0], (GdsPoint{-7, -1}));
    const Points cut = Outline({{0, 0}, {30, 40}}, 9, 2);
    EXPECT_EQ(cut, ExpandPathPlain({{0, 0}, {30, 40}}, 9, 2));
}

TEST(ExpandPath, RefusesFewerThanTwoPoints) {
    EXPECT_FALSE(ExpandPath({}, {}, 10, 0));
    EXPECT_TRUE(Outline({{5, 5}}, 10).empty());
}

TEST(ExpandPath, RefusesARepeatedPoint) {
    EXPECT_TRUE(Outline({{0, 0}, {0, 0}}, 10).empty());
    EXPECT_TRUE(Outline({{0, 0}, {10, 0}, {10, 0}, {10, 10}}, 10).empty());
    EXPECT_TRUE(Outline({{0, 0}, {10, 0}, {10, 10}, {10, 10}}, 10).empty());
}

TEST(ExpandPath, RefusesSegmentsThatRunOnOrDoubleBack) {
    EXPECT_TRUE(Outline({{0, 0}, {10, 0}, {20, 0}}, 10).empty());
    EXPECT_TRUE(Outline({{0, 0}, {10, 0}, {5, 0}}, 10).empty());
    EXPECT_TRUE(Outline({{0, 0}, {10, 10}, {30, 30}}, 10).empty());
    EXPECT_TRUE(Outline({{0, 5}, {0, 0}, {10, 0}, {20, 0}}, 10).empty());
}

TEST(ExpandPath, RefusesAType2StartByItsMixedTest) {
    EXPECT_TRUE(Outline({{7, 1}, {7, 7}}, 10, 2).empty());
    EXPECT_EQ(Outline({{7, 1}, {7, 7}}, 10, 0).size(), 5u);
    EXPECT_EQ(Outline({{7, 1}, {7, 8}}, 10, 2).size(), 5u);
}

TEST(ExpandPath, RefusesAType2EndByItsMixedTest) {
    EXPECT_TRUE(Outline({{0, 7}, {7, 7}, {7, 1}}, 10, 2).empty());
    EXPECT_EQ(Outline({{0, 7}, {7, 7}, {7, 1}}, 10, 0).size(), 7u);
}

TEST(ExpandPath, HoldsCornersThatAreTooFarAwayAtTheEndOfTheRange) {
    // Nearly parallel segments and the greatest width: the corner lies beyond 64 bits or far out.
    const Points path{{-2147483648LL, 0}, {0, 0}, {2147483647, 1}};
    const Points outline = Outline(path, 4294967295u);
    EXPECT_EQ(outline, ExpandPathPlain(path, 4294967295u, 0));
}

TEST(ExpandPath, GivesTheBitsOfThePlainVersion) {
    std::mt19937 random(41);
    int accepted = 0;
    for (int run = 0; run < 20000; ++run) {
        const std::int64_t reach = run % 3 == 0 ? 12 : run % 3 == 1 ? 5000 : 2147483647;
        Points points(static_cast<std::size_t>(RandomInteger(random, 1, 6)));
        for (GdsPoint& point : points) {
            point.x = RandomInteger(random, -reach, reach);
            point.y = RandomInteger(random, -reach, reach);
        }
        const auto width = static_cast<std::uint32_t>(RandomInteger(random, 0, reach * 2));
        const auto type = static_cast<std::uint16_t>(random() % 5);
        const Points outline = Outline(points, width, type);
        ASSERT_EQ(outline, ExpandPathPlain(points, width, type)) << "run " << run;
        accepted += outline.empty() ? 0 : 1;
    }
    EXPECT_GT(accepted, 10000);
}

}  // namespace
}  // namespace zelmo
