#include "model/mask/adjusted_mask.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "model/mask/mask.h"
#include "tests/model/grid_model.h"
#include "tests/model/mask/made_polygons.h"
#include "tests/plain/mask_plain.h"
#include "tests/state_records/fnv_hash.h"
#include "tests/support/case_count.h"

namespace zelmo {
namespace {

constexpr std::int32_t side = 40;

Grid GridOfSide(std::int32_t cells, float spacing) {
    Grid grid;
    grid.columns = grid.rows = cells;
    grid.spacing = spacing;
    return grid;
}

std::vector<MaskPolygon> Adjust(const std::vector<MaskPolygon>& polygons, float bias,
                                float shiftX = 0.0f, float shiftY = 0.0f) {
    return AdjustMask(GridOfSide(side, 1.0f), polygons, maskOne, {bias, shiftX, shiftY});
}

bool IsDrawn(const std::vector<MaskPolygon>& polygons, double x, double y) {
    return std::any_of(polygons.begin(), polygons.end(), [&](const MaskPolygon& polygon) {
        return PointInPolygonPlain(polygon, x, y);
    });
}

/// One row of text for each row of the grid, row 0 first, with '#' where the middle of a square
/// between grid lines is drawn.
using Picture = std::vector<std::string>;

Picture PictureOf(const std::vector<MaskPolygon>& polygons, std::int32_t cells) {
    Picture picture;
    for (std::int32_t row = 0; row < cells; ++row) {
        std::string& line = picture.emplace_back();
        for (std::int32_t col = 0; col < cells; ++col) {
            line += IsDrawn(polygons, col + 0.5, row + 0.5) ? '#' : '.';
        }
    }
    return picture;
}

using Corners = std::vector<std::pair<double, double>>;

/// The corners of a polygon without those that it repeats, in their order by position.
Corners CornersOf(const MaskPolygon& polygon) {
    Corners corners;
    for (const MaskPoint& point : polygon.points) {
        corners.emplace_back(point.x, point.y);
    }
    std::sort(corners.begin(), corners.end());
    corners.erase(std::unique(corners.begin(), corners.end()), corners.end());
    return corners;
}

TEST(AdjustMask, GrowsASquareOnEverySide) {
    const std::vector<MaskPolygon> grown = Adjust({MakeRectangle(1, 10, 12, 20, 16)}, 2.5f);
    ASSERT_EQ(grown.size(), 1u);
    EXPECT_EQ(CornersOf(grown[0]), (Corners{{7.5, 9.5}, {7.5, 18.5}, {22.5, 9.5}, {22.5, 18.5}}));
    EXPECT_EQ(grown[0].minX, 7.5);
    EXPECT_EQ(grown[0].minY, 9.5);
    EXPECT_EQ(grown[0].maxX, 22.5);
    EXPECT_EQ(grown[0].maxY, 18.5);
    EXPECT_TRUE(BelongsTo(maskOne, grown[0]));
}

TEST(AdjustMask, ShrinksASquareAndWhatIsTooSmallVanishes) {
    const std::vector<MaskPolygon> drawn{MakeRectangle(1, 10, 12, 20, 16)};
    const std::vector<MaskPolygon> shrunk = Adjust(drawn, -1.5f);
    ASSERT_EQ(shrunk.size(), 1u);
    EXPECT_EQ(CornersOf(shrunk[0]),
              (Corners{{11.5, 13.5}, {11.5, 14.5}, {18.5, 13.5}, {18.5, 14.5}}));
    EXPECT_TRUE(Adjust(drawn, -2.0f).empty());
    EXPECT_TRUE(Adjust(drawn, -100.0f).empty());
}

TEST(AdjustMask, MovesPolygonsWithoutTouchingTheirShape) {
    const MaskPolygon triangle = MakePolygon(1, {{1.1, 2.2}, {30.3, 2.7}, {9.9, 31.7}});
    const std::vector<MaskPolygon> moved = Adjust({triangle}, 0.0f, 0.25f, -1.5f);
    ASSERT_EQ(moved.size(), 1u);
    ASSERT_EQ(moved[0].points.size(), 3u);
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(moved[0].points[i].x, triangle.points[i].x + 0.25);
        EXPECT_EQ(moved[0].points[i].y, triangle.points[i].y - 1.5);
    }
    EXPECT_EQ(moved[0].minX, 1.1 + 0.25);
    EXPECT_EQ(moved[0].maxX, 30.3 + 0.25);
    EXPECT_EQ(moved[0].minY, 2.2 - 1.5);
    EXPECT_EQ(moved[0].maxY, 31.7 - 1.5);
}

TEST(AdjustMask, GrowsAndThenMoves) {
    const std::vector<MaskPolygon> both =
        Adjust({MakeRectangle(1, 10, 12, 20, 16)}, 1.0f, 3.0f, 4.0f);
    ASSERT_EQ(both.size(), 1u);
    EXPECT_EQ(CornersOf(both[0]), (Corners{{12, 15}, {12, 21}, {24, 15}, {24, 21}}));
}

TEST(AdjustMask, TakesThePolygonsOfTheMaskOnly) {
    std::vector<MaskPolygon> polygons{MakeRectangle(1, 2, 2, 4, 4), MakeRectangle(2, 10, 2, 14, 4),
                                      MakeRectangle(1, 20, 2, 24, 4)};
    polygons[2].datatype = 7;
    const Grid grid = GridOfSide(side, 1.0f);
    const auto count = [&](const std::vector<MaskLayer>& mask) {
        return AdjustMask(grid, polygons, mask, {0.5f, 0.0f, 0.0f}).size();
    };
    EXPECT_EQ(count({{1, std::nullopt}}), 2u);
    EXPECT_EQ(count({{1, 7}}), 1u);
    EXPECT_EQ(count({{2, 0}, {1, 0}}), 2u);
    EXPECT_EQ(count({{3, 0}}), 0u);
    EXPECT_EQ(
        AdjustMask(grid, polygons, std::vector<MaskLayer>{{1, std::nullopt}}, {0.0f, 1.0f, 0.0f})
            .size(),
        2u);
}

TEST(AdjustMask, OpensNoSeamWherePolygonsAbutOrOverlap) {
    const std::vector<MaskPolygon> abutting{MakeRectangle(1, 5, 5, 12, 20),
                                            MakeRectangle(1, 12, 5, 20, 20),
                                            MakeRectangle(1, 17, 10, 30, 15)};
    const std::vector<MaskPolygon> shrunk = Adjust(abutting, -1.0f);
    ASSERT_EQ(shrunk.size(), 1u);
    EXPECT_EQ(
        CornersOf(shrunk[0]),
        (Corners{{6, 6}, {6, 19}, {19, 6}, {19, 11}, {19, 14}, {19, 19}, {29, 11}, {29, 14}}));
}

TEST(AdjustMask, OpensNoSeamBetweenLayersOfAMask) {
    std::vector<MaskPolygon> polygons{MakeRectangle(1, 5, 5, 12, 20),
                                      MakeRectangle(2, 12, 5, 20, 20)};
    polygons[1].datatype = 3;
    const std::vector<MaskPolygon> shrunk =
        AdjustMask(GridOfSide(side, 1.0f), polygons,
                   std::vector<MaskLayer>{{2, 3}, {1, std::nullopt}}, {-1.0f, 0.0f, 0.0f});
    ASSERT_EQ(shrunk.size(), 1u);
    EXPECT_EQ(CornersOf(shrunk[0]), (Corners{{6, 6}, {6, 19}, {19, 6}, {19, 19}}));
}

TEST(AdjustMask, DoesNotDependOnTheDirectionOfAnOutline) {
    const MaskPolygon one = MakePolygon(1, {{4, 4}, {20, 4}, {20, 9}, {11, 9}, {11, 30}, {4, 30}});
    MaskPolygon other = one;
    std::reverse(other.points.begin(), other.points.end());
    for (const float bias : {-1.25f, 2.0f}) {
        const std::vector<MaskPolygon> a = Adjust({one}, bias);
        const std::vector<MaskPolygon> b = Adjust({other}, bias);
        ASSERT_EQ(a.size(), 1u);
        ASSERT_EQ(b.size(), 1u);
        EXPECT_EQ(CornersOf(a[0]), CornersOf(b[0]));
    }
}

/// A square with a square hole, by a cut without width and by a bridge between overlapping halves.
std::vector<std::vector<MaskPolygon>> Rings() {
    const MaskPolygon keyhole = MakePolygon(1, {{5, 5},
                                                {30, 5},
                                                {30, 30},
                                                {5, 30},
                                                {5, 5},
                                                {12, 12},
                                                {12, 22},
                                                {22, 22},
                                                {22, 12},
                                                {12, 12},
                                                {5, 5}});
    const MaskPolygon level = MakePolygon(1, {{5, 5},
                                              {30, 5},
                                              {30, 30},
                                              {5, 30},
                                              {5, 12},
                                              {12, 12},
                                              {12, 22},
                                              {22, 22},
                                              {22, 12},
                                              {5, 12}});
    return {{keyhole},
            {level},
            {MakeRectangle(1, 5, 5, 30, 12), MakeRectangle(1, 5, 12, 12, 22),
             MakeRectangle(1, 22, 12, 30, 22), MakeRectangle(1, 5, 22, 30, 30)}};
}

TEST(AdjustMask, AHoleShrinksAsItsPolygonGrows) {
    const std::vector<MaskPolygon> grown{
        MakeRectangle(1, 3, 3, 32, 14), MakeRectangle(1, 3, 14, 14, 20),
        MakeRectangle(1, 20, 14, 32, 20), MakeRectangle(1, 3, 20, 32, 32)};
    const std::vector<MaskPolygon> shrunk{
        MakeRectangle(1, 7, 7, 28, 10), MakeRectangle(1, 7, 10, 10, 24),
        MakeRectangle(1, 24, 10, 28, 24), MakeRectangle(1, 7, 24, 28, 28)};
    for (const std::vector<MaskPolygon>& ring : Rings()) {
        EXPECT_EQ(PictureOf(Adjust(ring, 2.0f), side), PictureOf(grown, side));
        EXPECT_EQ(PictureOf(Adjust(ring, -2.0f), side), PictureOf(shrunk, side));
        EXPECT_EQ(PictureOf(Adjust(ring, 5.0f), side),
                  PictureOf({MakeRectangle(1, 0, 0, 35, 35)}, side));
        EXPECT_TRUE(Adjust(ring, -4.5f).empty());
    }
}

TEST(AdjustMask, AnIslandInAHoleGrowsByItself) {
    std::vector<MaskPolygon> rings = Rings()[2];
    rings.push_back(MakeRectangle(1, 15, 15, 19, 19));
    std::vector<MaskPolygon> expected{
        MakeRectangle(1, 4, 4, 31, 13), MakeRectangle(1, 4, 13, 13, 21),
        MakeRectangle(1, 21, 13, 31, 21), MakeRectangle(1, 4, 21, 31, 31),
        MakeRectangle(1, 14, 14, 20, 20)};
    EXPECT_EQ(PictureOf(Adjust(rings, 1.0f), side), PictureOf(expected, side));
}

TEST(AdjustMask, CornersAreMitredUnlessTheyAreSharp) {
    // A right angle whose legs run along the axes, and two corners of 45 degrees.
    const std::vector<MaskPolygon> grown =
        Adjust({MakePolygon(1, {{10, 10}, {30, 10}, {10, 30}})}, 1.0f);
    const double far = 30.0 + 1.0 + std::sqrt(2.0);
    EXPECT_TRUE(IsDrawn(grown, 9.01, 9.01));
    EXPECT_TRUE(IsDrawn(grown, far - 0.01, 9.004));
    EXPECT_FALSE(IsDrawn(grown, far + 0.01, 9.004));
    EXPECT_TRUE(IsDrawn(grown, 9.004, far - 0.01));
    // A corner of 11 degrees would reach 10 times as far as the bias.
    const std::vector<MaskPolygon> needle =
        Adjust({MakePolygon(1, {{5, 10}, {5, 14}, {25, 12}})}, 1.0f);
    EXPECT_TRUE(IsDrawn(needle, 25.9, 12.0));
    EXPECT_FALSE(IsDrawn(needle, 28.1, 12.0));
}

TEST(AdjustMask, KeepsWhatComesInFromOutsideTheGrid) {
    EXPECT_EQ(Adjust({MakeRectangle(1, -30, 5, -20, 10)}, 0.0f, 25.0f).size(), 1u);
    EXPECT_EQ(Adjust({MakeRectangle(1, 60, 5, 70, 10)}, 0.0f, -25.0f).size(), 1u);
    EXPECT_EQ(Adjust({MakeRectangle(1, 5, 60, 10, 70)}, 0.0f, 0.0f, -25.0f).size(), 1u);
    EXPECT_EQ(Adjust({MakeRectangle(1, -30, 5, -20, 10)}, 22.0f).size(), 1u);
    EXPECT_TRUE(Adjust({MakeRectangle(1, -30, 5, -20, 10)}, 0.0f, -5.0f).empty());
}

TEST(AdjustMask, APolygonWithoutAreaNeverGrows) {
    EXPECT_TRUE(Adjust({MakePolygon(1, {{5, 5}, {9, 9}, {5, 5}})}, 2.0f).empty());
    EXPECT_TRUE(Adjust({MakePolygon(1, {{5, 5}})}, 2.0f).empty());
    EXPECT_TRUE(Adjust({MakePolygon(1, {{5, 5}, {5, 5}, {5, 5}, {5, 5}})}, 2.0f).empty());
}

TEST(AdjustMask, SurvivesImpossibleNumbers) {
    constexpr double inf = std::numeric_limits<double>::infinity();
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    constexpr float large = std::numeric_limits<float>::infinity();
    std::vector<MaskPolygon> polygons{
        MakePolygon(1, {{-inf, 5}, {inf, 5}, {20, inf}}),
        MakePolygon(1, {{nan, 1}, {3, nan}, {9, 9}}),
        MakePolygon(1, {{-1e300, -1e300}, {1e300, -1e300}, {1e300, 1e300}}),
        MakeRectangle(1, 5, 5, 9, 9)};
    for (const float bias : {1.0f, -1.0f, large, -large, 1e-30f, 3e38f, 0.0f}) {
        for (const float shift : {0.0f, 1.0f, large, -large, 3e38f}) {
            for (const float spacing : {1.0f, 1e-38f, 3e38f, 1e-45f}) {
                const Grid grid = GridOfSide(side, spacing);
                const std::vector<MaskPolygon> adjusted =
                    AdjustMask(grid, polygons, maskOne, {bias, shift, 0.0f});
                std::vector<std::uint8_t> mask(grid.CellCount());
                RasteriseMask(grid, adjusted, mask, maskOne, true);
            }
        }
    }
}

// Against plain ways

/// Whether a square of `reach` squares around each square of a picture holds one that is set, or
/// none that is not.
Picture Resized(const Picture& picture, int bias) {
    const char sought = bias > 0 ? '#' : '.';
    const int reach = std::abs(bias);
    Picture resized = picture;
    const int size = static_cast<int>(picture.size());
    for (int row = 0; row < size; ++row) {
        for (int col = 0; col < size; ++col) {
            bool found = false;
            for (int y = std::max(0, row - reach); y <= std::min(size - 1, row + reach); ++y) {
                const std::string line = picture[static_cast<std::size_t>(y)].substr(
                    static_cast<std::size_t>(std::max(0, col - reach)),
                    static_cast<std::size_t>(std::min(size - 1, col + reach) -
                                             std::max(0, col - reach) + 1));
                found = found || line.find(sought) != std::string::npos;
            }
            resized[static_cast<std::size_t>(row)][static_cast<std::size_t>(col)] =
                found == (bias > 0) ? '#' : '.';
        }
    }
    return resized;
}

/// Outlines along the axes with corners at whole numbers: rectangles, and staircases that cross
/// themselves.
MaskPolygon RandomStairs(TestRandom& random) {
    const auto coordinate = [&] { return static_cast<double>(8 + random.Below(24)); };
    if (random.Below(2) == 0) {
        const double x = coordinate();
        const double y = coordinate();
        return MakeRectangle(1, x, y, x + 1.0 + random.Below(12), y + 1.0 + random.Below(6));
    }
    std::vector<MaskPoint> points{{coordinate(), coordinate()}};
    const std::uint32_t steps = 1 + random.Below(5);
    for (std::uint32_t i = 0; i < steps; ++i) {
        points.push_back({coordinate(), points.back().y});
        points.push_back({points.back().x, coordinate()});
    }
    points.push_back({points.front().x, points.back().y});
    if (random.Below(2) == 0) {
        std::reverse(points.begin(), points.end());
    }
    return MakePolygon(1, points);
}

TEST(AdjustMaskAgainstPlain, GrowsAndShrinksOutlinesAlongTheAxesByWholeSquares) {
    std::size_t drawn = 0;
    for (std::uint32_t seed = 0; seed < CaseCount(1000); ++seed) {
        TestRandom random(seed);
        std::vector<MaskPolygon> polygons;
        for (std::uint32_t count = 1 + random.Below(seed % 10 == 0 ? 150 : 6); count > 0; --count) {
            polygons.push_back(RandomStairs(random));
        }
        const Picture before = PictureOf(polygons, 48);
        for (const int bias : {1, 3, -1, -2}) {
            const std::vector<MaskPolygon> adjusted = AdjustMask(
                GridOfSide(48, 1.0f), polygons, maskOne, {static_cast<float>(bias), 0.0f, 0.0f});
            ASSERT_EQ(PictureOf(adjusted, 48), Resized(before, bias))
                << "seed " << seed << " bias " << bias;
            drawn += adjusted.size();
        }
    }
    EXPECT_GT(drawn, 4000u);
}

double DistanceToEdge(const MaskPoint& a, const MaskPoint& b, double x, double y) {
    const double dx = b.x - a.x;
    const double dy = b.y - a.y;
    const double length = dx * dx + dy * dy;
    const double along =
        length == 0.0 ? 0.0 : std::clamp(((x - a.x) * dx + (y - a.y) * dy) / length, 0.0, 1.0);
    return std::hypot(x - a.x - along * dx, y - a.y - along * dy);
}

/// The distance from a point to the nearest edge of some polygons that is no edge within another.
double DistanceToOutline(const std::vector<MaskPolygon>& polygons, double x, double y) {
    double nearest = std::numeric_limits<double>::max();
    for (const MaskPolygon& polygon : polygons) {
        const MaskPoint* previous = &polygon.points.back();
        for (const MaskPoint& point : polygon.points) {
            nearest = std::min(nearest, DistanceToEdge(*previous, point, x, y));
            previous = &point;
        }
    }
    return nearest;
}

MaskPolygon RandomOutline(TestRandom& random) {
    std::vector<MaskPoint> points;
    for (std::uint32_t count = 3 + random.Below(6); count > 0; --count) {
        points.push_back({4.0 + 32.0 * static_cast<double>(random.Unit()),
                          4.0 + 32.0 * static_cast<double>(random.Unit())});
    }
    return MakePolygon(1, points);
}

/// Less than this is rounded: needles and gaps that are narrower come and go.
constexpr double rounding = 0.01;

bool IsWellInside(const std::vector<MaskPolygon>& polygons, double x, double y) {
    return IsDrawn(polygons, x, y) && DistanceToOutline(polygons, x, y) > rounding;
}

/// Whether one of some random places within `reach` of a place is well inside of what is drawn.
bool IsNear(const std::vector<MaskPolygon>& polygons, double x, double y, double reach,
            TestRandom& random) {
    for (int i = 0; i < 20; ++i) {
        const double dx = (2.0 * static_cast<double>(random.Unit()) - 1.0) * reach;
        const double dy = (2.0 * static_cast<double>(random.Unit()) - 1.0) * reach;
        if (std::hypot(dx, dy) < reach && IsWellInside(polygons, x + dx, y + dy)) {
            return true;
        }
    }
    return false;
}

/// What is nearer to the drawing than the bias has to be drawn, and nothing further away than the
/// mitre limit lets corners reach; of what lies further inside than that everything stays.
TEST(AdjustMaskAgainstPlain, KeepsTheDistancesOfAnyOutlines) {
    std::array<std::size_t, 4> tested{};
    for (std::uint32_t seed = 0; seed < CaseCount(500); ++seed) {
        TestRandom random(seed);
        std::vector<MaskPolygon> polygons;
        for (std::uint32_t count = 1 + random.Below(seed % 10 == 0 ? 60 : 3); count > 0; --count) {
            polygons.push_back(RandomOutline(random));
        }
        const double bias = 0.2 + 2.0 * static_cast<double>(random.Unit());
        const std::vector<MaskPolygon> grown = Adjust(polygons, static_cast<float>(bias));
        const std::vector<MaskPolygon> shrunk = Adjust(polygons, static_cast<float>(-bias));
        for (int i = 0; i < 60; ++i) {
            const double x = 40.0 * static_cast<double>(random.Unit());
            const double y = 40.0 * static_cast<double>(random.Unit());
            const bool inside = IsDrawn(polygons, x, y);
            const double distance = DistanceToOutline(polygons, x, y);
            const bool isFar = distance > mitreLimit * bias + rounding;
            if (IsWellInside(polygons, x, y) || IsNear(polygons, x, y, bias - rounding, random)) {
                ASSERT_TRUE(IsDrawn(grown, x, y)) << "seed " << seed << ' ' << x << ' ' << y;
                ++tested[0];
            } else if (!inside && isFar) {
                ASSERT_FALSE(IsDrawn(grown, x, y)) << "seed " << seed << ' ' << x << ' ' << y;
                ++tested[1];
            }
            if (inside && isFar) {
                ASSERT_TRUE(IsDrawn(shrunk, x, y)) << "seed " << seed << ' ' << x << ' ' << y;
                ++tested[2];
            } else if (!inside && distance > rounding) {
                ASSERT_FALSE(IsDrawn(shrunk, x, y)) << "seed " << seed << ' ' << x << ' ' << y;
                ++tested[3];
            }
        }
    }
    for (const std::size_t count : tested) {
        EXPECT_GT(count, 200u);
    }
}

TEST(AdjustMask, GivesTheSameBitsOnEveryPlatform) {
    FnvHash hash;
    for (std::uint32_t seed = 0; seed < 200; ++seed) {
        TestRandom random(seed);
        const std::vector<MaskPolygon> polygons{RandomOutline(random), RandomOutline(random),
                                                RandomStairs(random)};
        const float bias = (random.Unit() - 0.4f) * 4.0f;
        const Grid grid = GridOfSide(60, 0.7f);
        for (const MaskPolygon& polygon :
             AdjustMask(grid, polygons, maskOne, {bias, random.Unit(), -random.Unit()})) {
            for (const MaskPoint& point : polygon.points) {
                hash.Add(static_cast<float>(point.x));
                hash.Add(static_cast<float>(point.y));
            }
        }
    }
    EXPECT_EQ(hash.Text(), "9c9f2ea8d26cd7f1");
}

/// How long it takes to grow and to shrink some polygons, in seconds.
double SecondsOf(const Grid& grid, const std::vector<MaskPolygon>& polygons) {
    const auto start = std::chrono::steady_clock::now();
    AdjustMask(grid, polygons, maskOne, {0.3f, 0.0f, 0.0f});
    AdjustMask(grid, polygons, maskOne, {-0.3f, 0.0f, 0.0f});
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

TEST(AdjustMask, IsQuickWithManyPolygons) {
    const Grid grid = GridOfSide(1000, 1.0f);
    std::vector<MaskPolygon> apart;
    std::vector<MaskPolygon> tiles;
    std::vector<MaskPolygon> mesh;
    std::vector<MaskPolygon> heap;
    TestRandom random(1);
    for (int row = 0; row < 150; ++row) {
        for (int col = 0; col < 150; ++col) {
            const double x = col * 6.0;
            const double y = row * 6.0;
            apart.push_back(MakeRectangle(1, x, y, x + 3.0, y + 3.0));
            tiles.push_back(MakeRectangle(1, x, y, x + 6.0, y + 6.0));
        }
        mesh.push_back(MakeRectangle(1, 0.0, row * 6.0, 1000.0, row * 6.0 + 2.0));
        mesh.push_back(MakeRectangle(1, row * 6.0, 0.0, row * 6.0 + 2.0, 1000.0));
    }
    for (int i = 0; i < 20000; ++i) {
        const double x = random.Below(500);
        const double y = random.Below(500);
        heap.push_back(
            MakePolygon(1, {{x, y}, {x + 200.0 + random.Below(300), y}, {x, y + 500.0}}));
    }
    // Measured at 0.1 to 1 s; what compares each with each takes minutes.
    EXPECT_LT(SecondsOf(grid, apart), 20.0);
    EXPECT_LT(SecondsOf(grid, tiles), 20.0);
    EXPECT_LT(SecondsOf(grid, mesh), 20.0);
    EXPECT_LT(SecondsOf(grid, heap), 40.0);
}

}  // namespace
}  // namespace zelmo
