#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <optional>
#include <random>
#include <stdexcept>
#include <utility>
#include <vector>

#include "gds/cell_bounds.h"
#include "gds/gds_database.h"
#include "gds/polygon_selection.h"
#include "tests/gds/cell_elements.h"
#include "tests/gds/random_layout.h"
#include "tests/plain/gds_plain.h"
#include "tests/support/case_count.h"

// Which polygons of a hierarchy a rectangle selects, and in which order.

namespace zelmo {
namespace {

ExtractionScope ScopeOf(std::int64_t x0, std::int64_t y0, std::int64_t x1, std::int64_t y1) {
    ExtractionScope scope;
    scope.window.x0 = x0;
    scope.window.y0 = y0;
    scope.window.x1 = x1;
    scope.window.y1 = y1;
    return scope;
}

/// Sizes the cell and collects its polygons.
std::optional<ExtractionRefusal> Collect(ExtractionScope& scope, GdsCell& cell) {
    ComputeCellBounds(cell, GdsTransform());
    return CollectCellPolygons(scope, {&cell, GdsTransform()});
}

std::vector<std::uint16_t> LayersOf(const ExtractionScope& scope) {
    std::vector<std::uint16_t> layers;
    for (const RawPolygon& polygon : scope.output) {
        layers.push_back(polygon.layer);
    }
    return layers;
}

using Layers = std::vector<std::uint16_t>;

TEST(CollectCellPolygons, TellsLayerAndDatatypeOfEveryPolygon) {
    GdsCell leaf;
    for (const std::uint16_t datatype : {44, 0, 65535}) {
        Add(leaf.boundaries, Rectangle(65, 0, 0, 5, 5));
        leaf.boundaries.back().datatype = datatype;
    }
    GdsCell top;
    Add(top.srefs, Reference(leaf, {20, 20}));
    ExtractionScope scope = ScopeOf(0, 0, 100, 100);
    ComputeCellBounds(leaf, GdsTransform());
    EXPECT_EQ(Collect(scope, top), std::nullopt);
    ASSERT_EQ(scope.output.size(), 3u);
    EXPECT_EQ(LayersOf(scope), (Layers{65, 65, 65}));
    EXPECT_EQ(scope.output[0].datatype, 44);
    EXPECT_EQ(scope.output[1].datatype, 0);
    EXPECT_EQ(scope.output[2].datatype, 65535);
}

TEST(CollectCellPolygons, KeepsPolygonsWholeAndShiftsThemToTheCorner) {
    GdsCell cell;
    Add(cell.boundaries, Rectangle(7, -1000, -1000, 15, 25));
    ExtractionScope scope = ScopeOf(10, 20, 100, 100);
    EXPECT_EQ(Collect(scope, cell), std::nullopt);
    ASSERT_EQ(scope.output.size(), 1u);
    EXPECT_EQ(scope.output[0].layer, 7);
    EXPECT_EQ(
        scope.output[0].points,
        (std::vector<GdsPoint>{{-1010, -1020}, {5, -1020}, {5, 5}, {-1010, 5}, {-1010, -1020}}));
}

TEST(CollectCellPolygons, LeavesOutAPolygonThatOnlyTouchesTheRectangle) {
    GdsCell cell;
    Add(cell.boundaries, Rectangle(1, 100, 0, 200, 100));  // on x1
    Add(cell.boundaries, Rectangle(2, -100, 0, 0, 100));   // on x0
    Add(cell.boundaries, Rectangle(3, 0, 100, 100, 200));  // on y1
    Add(cell.boundaries, Rectangle(4, 0, -100, 100, 0));   // on y0
    Add(cell.boundaries, Rectangle(5, 99, 99, 200, 200));
    Add(cell.boundaries, Rectangle(6, -100, -100, 1, 1));
    ExtractionScope scope = ScopeOf(0, 0, 100, 100);
    scope.window.minSize = 1000;
    EXPECT_EQ(Collect(scope, cell), std::nullopt);
    EXPECT_EQ(scope.skipped, 2u);  // those that touch only are not counted
    scope.window.minSize = 0;
    Collect(scope, cell);
    EXPECT_EQ(LayersOf(scope), (Layers{5, 6}));
}

TEST(CollectCellPolygons, DropsOnlyWhatIsBelowTheLeastSize) {
    for (const auto& [minSize, kept] : {std::pair(100, true), {101, false}}) {
        GdsCell cell;
        Add(cell.boundaries, Rectangle(1, 0, 0, 100, 5000));
        ExtractionScope scope = ScopeOf(-10, -10, 1000, 1000);
        scope.window.minSize = minSize;
        EXPECT_EQ(Collect(scope, cell), std::nullopt);
        EXPECT_EQ(scope.output.size(), kept ? 1u : 0u);
        EXPECT_EQ(scope.skipped, kept ? 0u : 1u);
    }
}

TEST(CollectCellPolygons, JudgesTheSizeByThePlacedBox) {
    // A strip of width 10 passes when it lies diagonally, and when its reference magnifies it.
    GdsCell strip;
    Add(strip.boundaries, Rectangle(1, 0, 0, 1000, 10));
    GdsCell top;
    Add(top.srefs, Reference(strip, {0, 0}));
    Add(top.srefs, Reference(strip, {0, 0}));
    top.srefs.back().angle = 0.785f;
    Add(top.srefs, Reference(strip, {0, 0}));
    top.srefs.back().mag = 10.0;
    ExtractionScope scope = ScopeOf(-10000, -10000, 20000, 20000);
    scope.window.minSize = 50;
    EXPECT_EQ(Collect(scope, top), std::nullopt);
    EXPECT_EQ(scope.output.size(), 2u);
    EXPECT_EQ(scope.skipped, 1u);
}

TEST(CollectCellPolygons, NeverDropsASubcellForBeingSmall) {
    GdsCell small;
    Add(small.boundaries, Rectangle(1, 0, 0, 2, 2));
    GdsCell top;
    Add(top.srefs, Reference(small, {5, 5}));
    ExtractionScope scope = ScopeOf(0, 0, 100, 100);
    scope.window.minSize = 10;
    EXPECT_EQ(Collect(scope, top), std::nullopt);
    EXPECT_EQ(scope.skipped, 1u);  // it was entered, and its polygon counted
}

TEST(CollectCellPolygons, GoesDepthFirstOwnPolygonsThenReferencesThenArrays) {
    GdsCell leaf;
    Add(leaf.boundaries, Rectangle(30, 0, 0, 5, 5));
    GdsCell middle;
    Add(middle.boundaries, Rectangle(20, 0, 0, 5, 5));
    Add(middle.srefs, Reference(leaf, {1, 1}));
    Add(middle.boundaries, Rectangle(21, 0, 0, 5, 5));
    GdsCell top;
    Add(top.arefs, Array(middle, 2, 1, {0, 0}, {2, 0}, {0, 2}));
    Add(top.srefs, Reference(leaf, {0, 0}));
    Add(top.srefs, Reference(middle, {0, 0}));
    Add(top.boundaries, Rectangle(10, 0, 0, 5, 5));
    ExtractionScope scope = ScopeOf(-100, -100, 100, 100);
    EXPECT_EQ(Collect(scope, top), std::nullopt);
    EXPECT_EQ(LayersOf(scope), (Layers{10, 30, 20, 21, 30, 20, 21, 30, 20, 21, 30}));
}

TEST(CollectCellPolygons, GoesThroughArraysColumnByColumn) {
    GdsCell leaf;
    Add(leaf.boundaries, Rectangle(1, 0, 0, 1, 1));
    GdsCell top;
    Add(top.arefs, Array(leaf, 20, 30, {0, 0}, {20 * 3, 0}, {0, 30 * 5}));
    ExtractionScope scope = ScopeOf(0, 0, 1000, 1000);
    EXPECT_EQ(Collect(scope, top), std::nullopt);
    ASSERT_EQ(scope.output.size(), 600u);
    for (std::int64_t k = 0; k < 600; ++k) {
        ASSERT_EQ(scope.output[static_cast<std::size_t>(k)].points[0],
                  (GdsPoint{k / 30 * 3, k % 30 * 5}));
    }
}

TEST(CollectCellPolygons, PrunesByTheReferencedCellsBoxAndItsOrigin) {
    // The cell's box reaches from its origin to the polygon, across the rectangle: the reference
    // passes, its polygon does not.
    GdsCell far;
    Add(far.boundaries, Rectangle(1, 1000, 1000, 1100, 1100));
    GdsCell top;
    Add(top.srefs, Reference(far, {0, 0}));
    ExtractionScope scope = ScopeOf(400, 400, 600, 600);
    EXPECT_EQ(Collect(scope, top), std::nullopt);
    EXPECT_TRUE(scope.output.empty());
    EXPECT_EQ(scope.skipped, 0u);
    // A stored box that misses the rectangle hides the polygons in it.
    far.bounds = {0, 0, 10, 10};
    scope = ScopeOf(900, 900, 1200, 1200);
    CollectCellPolygons(scope, {&top, GdsTransform()});
    EXPECT_TRUE(scope.output.empty());
}

TEST(CollectCellPolygons, StopsAsSoonAsTheLimitIsReached) {
    GdsCell leaf;
    for (std::uint16_t layer = 1; layer <= 3; ++layer) {
        Add(leaf.boundaries, Rectangle(layer, 0, 0, 5, 5));
    }
    GdsCell top;
    Add(top.arefs, Array(leaf, 2, 2, {0, 0}, {20, 0}, {0, 20}));
    const auto collect = [&](std::size_t limit) {
        ExtractionScope scope = ScopeOf(-100, -100, 100, 100);
        scope.limits.polygons = limit;
        const auto result = Collect(scope, top);
        EXPECT_EQ(scope.output.size(), std::min<std::size_t>(limit, 12));
        return result;
    };
    EXPECT_EQ(collect(13), std::nullopt);
    EXPECT_EQ(collect(12), ExtractionRefusal::TooManyPolygons);  // also at the very last polygon
    EXPECT_EQ(collect(5), ExtractionRefusal::TooManyPolygons);
    EXPECT_EQ(ExtractionLimits().polygons, 10000000u);
}

TEST(CollectCellPolygons, ThrowsForAnArrayOfFewerThanThreePoints) {
    GdsCell leaf;
    GdsCell top;
    Add(top.arefs, Array(leaf, 0, 0, {}, {}, {}));
    top.arefs.back().points = top.arefs.back().points.first(2);
    ExtractionScope scope = ScopeOf(0, 0, 10, 10);
    EXPECT_THROW(CollectCellPolygons(scope, {&top, GdsTransform()}), std::out_of_range);
}

TEST(CollectCellPolygons, HasNothingToTakeFromAnArrayOfNoColumnsOrRows) {
    GdsCell leaf;
    Add(leaf.boundaries, Rectangle(1, 0, 0, 5, 5));
    GdsCell top;
    Add(top.arefs, Array(leaf, 0, 5, {0, 0}, {20, 0}, {0, 20}));
    Add(top.arefs, Array(leaf, 5, 0, {0, 0}, {20, 0}, {0, 20}));
    ExtractionScope scope = ScopeOf(-10, -10, 100, 100);
    EXPECT_EQ(Collect(scope, top), std::nullopt);
    EXPECT_TRUE(scope.output.empty());
}

TEST(CollectCellPolygons, PutsInstancesBeyond32BitsAtTheMostNegativeNumber) {
    GdsCell leaf;
    Add(leaf.boundaries, Rectangle(1, 0, 0, 5, 5));
    GdsCell top;
    // The second column stands at 3,000,000,000.
    Add(top.arefs, Array(leaf, 2, 1, {2000000000, 0}, {4000000000, 0}, {2000000000, 1}));
    ExtractionScope scope = ScopeOf(-2147483648LL, -10, -2147483000, 100);
    EXPECT_EQ(Collect(scope, top), std::nullopt);
    // Sized at its true place, extracted at the other end of the world.
    EXPECT_EQ(top.bounds, (GdsRect{0, 0, 3000000005, 5}));
    ASSERT_EQ(scope.output.size(), 1u);
    EXPECT_EQ(scope.output[0].points[0], (GdsPoint{0, 10}));
}

TEST(CollectCellPolygons, WalksAChainOf200000Cells) {
    constexpr std::size_t depth = 200000;
    std::vector<GdsCell> cells(depth);
    Add(cells.back().boundaries, Rectangle(1, 0, 0, 5, 5));
    for (std::size_t i = 0; i + 1 < depth; ++i) {
        if (i % 2 == 0) {
            Add(cells[i].srefs, Reference(cells[i + 1], {1, 0}));
        } else {
            Add(cells[i].arefs, Array(cells[i + 1], 1, 1, {1, 0}, {2, 0}, {1, 1}));
        }
    }
    ExtractionScope scope = ScopeOf(0, 0, 1000000, 100);
    EXPECT_EQ(Collect(scope, cells.front()), std::nullopt);
    ASSERT_EQ(scope.output.size(), 1u);
    EXPECT_EQ(scope.output[0].points[0], (GdsPoint{depth - 1, 0}));
}

TEST(CollectCellPolygons, FindsAFewInstancesOfNestedHugeArraysAtOnce) {
    GdsCell a;
    Add(a.boundaries, Rectangle(1, 0, 0, 3, 4));
    GdsCell b;
    Add(b.arefs, Array(a, 65535, 65535, {0, 0}, {65535 * 10, 0}, {0, 65535 * 20}));
    GdsCell c;
    // The copies stand side by side.
    Add(c.arefs, Array(b, 1000, 1000, {0, 0}, {1000 * 655350LL, 0}, {0, 1000 * 1310700LL}));
    const std::int64_t x = 655350 * 600 + 30;
    const std::int64_t y = 1310700 * 400 + 40;
    ExtractionScope scope = ScopeOf(x, y, x + 31, y + 41);
    EXPECT_EQ(Collect(scope, c), std::nullopt);
    std::vector<GdsPoint> corners;
    for (const RawPolygon& polygon : scope.output) {
        corners.push_back(polygon.points[0]);
    }
    std::vector<GdsPoint> expected;
    for (const std::int64_t column : {0, 10, 20, 30}) {
        for (const std::int64_t row : {0, 20, 40}) {
            expected.push_back({column, row});
        }
    }
    EXPECT_EQ(corners, expected);
}

// What selects nothing is told in advance, however many instances there are

/// Three nested arrays of 65535 by 65535 instances, all in one place.
struct Heap {
    explicit Heap(const GdsBoundary* polygon) {
        if (polygon != nullptr) {
            Add(leaf.boundaries, *polygon);
        }
        GdsCell* below = &leaf;
        for (GdsCell& level : levels) {
            Add(level.arefs, Array(*below, 65535, 65535, {0, 0}, {0, 0}, {0, 0}));
            below = &level;
        }
    }
    GdsCell leaf;
    GdsCell levels[3];
};

TEST(CollectCellPolygons, PassesOverHugeArraysOfCellsWithoutPolygons) {
    Heap heap(nullptr);
    ExtractionScope scope = ScopeOf(-100, -100, 100, 100);
    EXPECT_EQ(Collect(scope, heap.levels[2]), std::nullopt);
    EXPECT_TRUE(scope.output.empty());
    EXPECT_EQ(scope.skipped, 0u);
}

TEST(CollectCellPolygons, CountsTheSmallPolygonsOfHugeArraysTogether) {
    const GdsBoundary small = Rectangle(1, 0, 0, 3, 4);
    Heap heap(&small);
    ExtractionScope scope = ScopeOf(-100, -100, 100, 100);
    scope.window.minSize = 5;
    EXPECT_EQ(Collect(scope, heap.levels[0]), std::nullopt);
    EXPECT_TRUE(scope.output.empty());
    EXPECT_EQ(scope.skipped, 65535u * 65535u);
    scope.skipped = 0;
    GdsCell two;
    Add(two.arefs, Array(heap.levels[0], 65535, 1000, {0, 0}, {0, 0}, {0, 0}));
    EXPECT_EQ(Collect(scope, two), std::nullopt);
    EXPECT_EQ(scope.skipped, std::uint64_t{65535} * 65535 * 65535 * 1000);
}

TEST(CollectCellPolygons, PassesOverHugeArraysWhosePolygonsLieElsewhere) {
    // Every instance's box reaches from its origin across the rectangle to the polygon.
    const GdsBoundary far = Rectangle(1, 1000, 1000, 1100, 1100);
    Heap heap(&far);
    ExtractionScope scope = ScopeOf(400, 400, 600, 600);
    EXPECT_EQ(Collect(scope, heap.levels[2]), std::nullopt);
    EXPECT_TRUE(scope.output.empty());
    EXPECT_EQ(scope.skipped, 0u);
}

TEST(CollectCellPolygons, PassesOverAHierarchyOfManyPathsThatSelectsNothing) {
    // 2^100 paths lead down to one small polygon.
    std::vector<GdsCell> cells(101);
    Add(cells[0].boundaries, Rectangle(1, 0, 0, 3, 4));
    for (std::size_t i = 1; i < cells.size(); ++i) {
        Add(cells[i].srefs, Reference(cells[i - 1], {1, 0}));
        Add(cells[i].srefs, Reference(cells[i - 1], {0, 1}));
    }
    ExtractionScope scope = ScopeOf(-1000, -1000, 1000, 1000);
    scope.window.minSize = 5;
    EXPECT_EQ(Collect(scope, cells.back()), std::nullopt);
    EXPECT_EQ(scope.skipped, 0u);  // 2^100 in 64 bits
    EXPECT_EQ(Collect(scope, cells[60]), std::nullopt);
    EXPECT_EQ(scope.skipped, std::uint64_t{1} << 60);
}

TEST(CollectCellPolygons, EndsAtTheLimitInHugeArraysOfPolygonsInReach) {
    const GdsBoundary polygon = Rectangle(1, 0, 0, 30, 40);
    Heap heap(&polygon);
    ExtractionScope scope = ScopeOf(-100, -100, 100, 100);
    scope.window.minSize = 5;
    scope.limits.polygons = 100000;
    EXPECT_EQ(Collect(scope, heap.levels[2]), ExtractionRefusal::TooManyPolygons);
    EXPECT_EQ(scope.output.size(), 100000u);
}

// Against the plain version

ExtractionScope RandomScope(std::mt19937& random, std::int64_t reach) {
    const std::int64_t side = RandomInteger(random, 0, 3) == 0 ? reach * 4 : reach / 2 + 1;
    ExtractionScope scope;
    scope.window.x0 = RandomInteger(random, -2 * reach, 2 * reach);
    scope.window.y0 = RandomInteger(random, -2 * reach, 2 * reach);
    scope.window.x1 = scope.window.x0 + RandomInteger(random, 0, side);
    scope.window.y1 = scope.window.y0 + RandomInteger(random, 0, side);
    scope.window.minSize = random() % 2 == 0 ? 0 : RandomInteger(random, 0, reach / 8 + 1);
    scope.limits.polygons = random() % 4 == 0 ? 1 + random() % 20 : 2000;
    scope.limits.patience = random() % 3 == 0 ? 50000 : random() % 4;
    return scope;
}

void ExpectSamePolygons(const ExtractionScope& found, const ExtractionScope& expected) {
    ASSERT_EQ(found.output.size(), expected.output.size());
    ASSERT_EQ(found.skipped, expected.skipped);
    for (std::size_t i = 0; i < found.output.size(); ++i) {
        ASSERT_EQ(found.output[i].layer, expected.output[i].layer);
        ASSERT_EQ(found.output[i].datatype, expected.output[i].datatype);
        ASSERT_EQ(found.output[i].points, expected.output[i].points);
    }
}

void ExpectPlainPolygons(const ExtractionScope& scope, const PlacedCell& placed) {
    ExtractionScope found = scope;
    ExtractionScope expected = scope;
    ASSERT_EQ(CollectCellPolygons(found, placed), CollectCellPolygonsPlain(expected, placed));
    ExpectSamePolygons(found, expected);
}

TEST(CollectCellPolygons, GivesThePolygonsOfThePlainVersionInTheirOrder) {
    std::mt19937 random(71);
    for (std::uint32_t run = 0; run < CaseCount(1500); ++run) {
        RandomLayoutSettings settings;
        settings.cells = static_cast<std::int32_t>(RandomInteger(random, 1, 6));
        settings.reach = run % 3 == 0 ? 30 : run % 3 == 1 ? 20000 : 2147483647;
        settings.arraySide = 5;
        settings.strangeMagnifications = run % 5 == 0;
        GdsDatabase database = RandomLayout(random, settings);
        for (GdsCell& cell : database.cells) {
            ComputeCellBounds(cell, GdsTransform());
        }
        for (const GdsCell& cell : database.cells) {
            ExpectPlainPolygons(RandomScope(random, settings.reach), {&cell, GdsTransform()});
            if (HasFatalFailure()) {
                FAIL() << "run " << run;
            }
        }
    }
}

TEST(CollectCellPolygons, FindsTheInstancesOfAnyArrayUnderAnyPlacement) {
    std::mt19937 random(72);
    constexpr double infinity = std::numeric_limits<double>::infinity();
    constexpr double magnifications[] = {1.0, 1.0, 0.5, 3.25, -1.0, 0.0, infinity, 1e-3};
    std::size_t polygons = 0;
    for (std::uint32_t run = 0; run < CaseCount(1500); ++run) {
        const std::int64_t reach = run % 3 == 0 ? 60 : run % 3 == 1 ? 3000 : 2147483647;
        GdsCell leaf;
        Add(leaf.boundaries, Rectangle(1, -reach / 40, 0, reach / 20, reach / 30));
        ComputeCellBounds(leaf, GdsTransform());
        GdsCell parent;
        GdsAref aref = Array(leaf, 1 + static_cast<std::int32_t>(random() % 60),
                             1 + static_cast<std::int32_t>(random() % 60), {}, {}, {});
        std::vector<GdsPoint> points(3);
        for (GdsPoint& point : points) {
            point.x = RandomInteger(random, -reach, reach);
            point.y = RandomInteger(random, -reach, reach);
        }
        if (run % 2 == 0) {  // along the axes
            points[1].y = points[0].y;
            points[2].x = points[0].x;
        }
        aref.points = points;
        aref.mag = magnifications[random() % std::size(magnifications)];
        aref.angle = RandomAngle(random);
        aref.strans = random() % 2 == 0 ? 0 : 0x8000;
        Add(parent.arefs, aref);
        GdsTransform transform;
        transform.flip = random() % 2 == 0 ? 0 : 0x8000;
        transform.dx = RandomInteger(random, -reach, reach);
        transform.mag = magnifications[random() % std::size(magnifications)];
        transform.angle = RandomAngle(random);
        const ExtractionScope scope = RandomScope(random, reach);
        ExpectPlainPolygons(scope, {&parent, transform});
        if (HasFatalFailure()) {
            FAIL() << "run " << run;
        }
        ExtractionScope counted = scope;
        CollectCellPolygons(counted, {&parent, transform});
        polygons += counted.output.size();
    }
    EXPECT_GT(polygons, 10000u);
}

TEST(CollectCellPolygons, FindsTheWrappedInstancesOfArraysThatLeave32Bits) {
    std::mt19937 random(73);
    std::size_t polygons = 0;
    for (std::uint32_t run = 0; run < CaseCount(400); ++run) {
        GdsCell leaf;
        Add(leaf.boundaries, Rectangle(1, 0, 0, 100, 100));
        ComputeCellBounds(leaf, GdsTransform());
        GdsCell parent;
        const auto coordinate = [&] { return RandomInteger(random, -4, 4) * 1073741824; };
        GdsAref aref = Array(leaf, 40, 40, {}, {}, {});
        std::vector<GdsPoint> points(3);
        for (GdsPoint& point : points) {
            point.x = coordinate() + RandomInteger(random, -5, 5);
            point.y = coordinate() + RandomInteger(random, -5, 5);
        }
        aref.points = points;
        Add(parent.arefs, aref);
        const std::int64_t edge = run % 2 == 0 ? -2147483648LL : 2147483600;
        ExtractionScope scope = ScopeOf(edge, -5000000000, edge + 60, 5000000000);
        ExpectPlainPolygons(scope, {&parent, GdsTransform()});
        if (HasFatalFailure()) {
            FAIL() << "run " << run;
        }
        CollectCellPolygons(scope, {&parent, GdsTransform()});
        polygons += scope.output.size();
    }
    EXPECT_GT(polygons, 1000u);
}

TEST(CollectCellPolygons, LeavesChainsOfTwinsBeyondAllNumbersAtOnce) {
    // 2^1200 instances of the last cell, at coordinates that no integer holds.
    std::vector<GdsCell> chain(1200);
    Add(chain.back().boundaries, Rectangle(1, 0, 0, 900, 700));
    for (std::size_t i = 0; i + 1 < chain.size(); ++i) {
        GdsSref twin = Reference(chain[i + 1], {4933, 10758});
        twin.mag = 2.0;
        twin.angle = 4.7;
        twin.strans = 0x8000;
        Add(chain[i].srefs, twin);
        Add(chain[i].srefs, twin);
    }
    for (GdsCell& cell : chain) {
        ComputeCellBounds(cell, GdsTransform());
    }
    ExtractionScope scope = ScopeOf(3000, -600, 8000, 300);
    EXPECT_EQ(CollectCellPolygons(scope, {&chain.front(), GdsTransform()}), std::nullopt);
    EXPECT_TRUE(scope.output.empty());
}

TEST(CollectCellPolygons, CountsTheDroppedPolygonsOfPlacementsThatItDoesNotWalkAgain) {
    // One polygon is too small, one lies too far away to be counted: 2^12 times each.
    std::vector<GdsCell> chain(13);
    Add(chain.back().boundaries, Rectangle(1, 10, 10, 12, 12));
    Add(chain.back().boundaries, Rectangle(1, 5000000000, 0, 6000000000, 1000));
    for (std::size_t i = 0; i + 1 < chain.size(); ++i) {
        const GdsSref twin = Reference(chain[i + 1], {0, 0});
        Add(chain[i].srefs, twin);
        Add(chain[i].srefs, twin);
    }
    ComputeCellBounds(chain.front(), GdsTransform());
    ExtractionScope scope = ScopeOf(0, 0, 100, 100);
    scope.window.minSize = 5;
    scope.limits.patience = 20;
    EXPECT_EQ(CollectCellPolygons(scope, {&chain.front(), GdsTransform()}), std::nullopt);
    EXPECT_EQ(scope.skipped, 4096u);
    EXPECT_TRUE(scope.output.empty());
}

TEST(CollectCellPolygons, GivesUpWhereSearchingWouldTakeForever) {
    // 10^27 instances of two squares between which the window lies.
    std::vector<GdsCell> cells(4);
    Add(cells[3].boundaries, Rectangle(1, -100000, -100000, -99990, -99990));
    Add(cells[3].boundaries, Rectangle(1, 100000, 100000, 100010, 100010));
    for (std::size_t i = 0; i < 3; ++i) {
        Add(cells[i].arefs, Array(cells[i + 1], 30000, 30000, {0, 0}, {9000, 1}, {1, 9000}));
    }
    ComputeCellBounds(cells[0], GdsTransform());
    ExtractionScope scope = ScopeOf(0, 0, 1000, 1000);
    scope.limits.fruitlessTests = 1000000;
    EXPECT_EQ(CollectCellPolygons(scope, {&cells[0], GdsTransform()}),
              ExtractionRefusal::FruitlessSearch);
}

TEST(CollectCellPolygons, CountsNoTestsThatLeadToPolygons) {
    // A chain of ten cells leads to every polygon: ten tests for each.
    std::vector<GdsCell> chain(11);
    Add(chain.back().boundaries, Rectangle(1, 0, 0, 10, 10));
    for (std::size_t i = 1; i + 1 < chain.size(); ++i) {
        Add(chain[i].srefs, Reference(chain[i + 1], {0, 0}));
    }
    Add(chain[0].arefs, Array(chain[1], 30, 30, {0, 0}, {600, 0}, {0, 600}));
    ExtractionScope scope = ScopeOf(-1, -1, 1000, 1000);
    scope.limits.fruitlessTests = 100;
    EXPECT_EQ(Collect(scope, chain[0]), std::nullopt);
    EXPECT_EQ(scope.output.size(), 900u);
}

TEST(CollectCellPolygons, CountsNoPolygonsBesideThoseThatItSelects) {
    // Every instance brings one polygon and many that are too small or too far away.
    GdsCell leaf;
    for (int i = 0; i < 40; ++i) {
        Add(leaf.boundaries, Rectangle(1, 0, 0, 2, 2));
        Add(leaf.boundaries, Rectangle(1, 5000, 5000, 5100, 5100));
    }
    Add(leaf.boundaries, Rectangle(2, 0, 0, 10, 10));
    GdsCell top;
    Add(top.arefs, Array(leaf, 30, 30, {0, 0}, {600, 0}, {0, 600}));
    ExtractionScope scope = ScopeOf(-1, -1, 1000, 1000);
    scope.window.minSize = 5;
    scope.limits.fruitlessTests = 100;
    EXPECT_EQ(Collect(scope, top), std::nullopt);
    EXPECT_EQ(scope.output.size(), 900u);
    EXPECT_EQ(scope.skipped, 900u * 40u);
}

TEST(CollectCellPolygons, DoesNotAddUpFruitlessTestsBetweenPolygons) {
    // Twenty placements without a polygon in reach follow each with one.
    GdsCell good;
    Add(good.boundaries, Rectangle(1, 0, 0, 10, 10));
    GdsCell bad;
    Add(bad.boundaries, Rectangle(1, -50000, -50000, -49990, -49990));
    Add(bad.boundaries, Rectangle(1, 50000, 50000, 50010, 50010));
    GdsCell top;
    for (int i = 0; i < 100; ++i) {
        Add(top.srefs, Reference(good, {i, 0}));
        for (int k = 0; k < 20; ++k) {
            Add(top.srefs, Reference(bad, {i, k}));
        }
    }
    ExtractionScope scope = ScopeOf(0, 0, 1000, 1000);
    scope.limits.fruitlessTests = 100;
    EXPECT_EQ(Collect(scope, top), std::nullopt);
    EXPECT_EQ(scope.output.size(), 100u);
    scope.limits.fruitlessTests = 50;
    EXPECT_EQ(Collect(scope, top), ExtractionRefusal::FruitlessSearch);
}

TEST(CollectCellPolygons, StopsAtTheLimitOfPointsToo) {
    GdsCell leaf;
    Add(leaf.boundaries, Rectangle(1, 0, 0, 10, 10));
    GdsCell parent;
    Add(parent.arefs, Array(leaf, 10, 10, {0, 0}, {200, 0}, {0, 200}));
    ComputeCellBounds(parent, GdsTransform());
    ExtractionScope scope = ScopeOf(-1, -1, 1000, 1000);
    scope.limits.points = 52;
    EXPECT_EQ(CollectCellPolygons(scope, {&parent, GdsTransform()}),
              ExtractionRefusal::TooManyPoints);
    EXPECT_EQ(scope.output.size(), 11u);
}

}  // namespace
}  // namespace zelmo
