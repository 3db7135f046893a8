#include "gds/placed_content.h"

#include <gtest/gtest.h>

#include <cstdint>

#include "gds/cell_bounds.h"
#include "gds/gds_database.h"
#include "gds/polygon_selection.h"
#include "tests/gds/cell_elements.h"
#include "tests/gds/layout_file.h"

namespace zelmo {
namespace {

/// A cell with one polygon of 30 by 40, and one that refers to it ten times over.
class PlacedContentTest : public testing::Test {
protected:
    PlacedContentTest() {
        Add(leaf.boundaries, Rectangle(100, 200, 130, 240));
        GdsAref aref;
        aref.cell = &leaf;
        aref.mag = 2.0;
        aref.columns = 3;
        aref.rows = 3;
        aref.points = KeepPoints({{1000, 0}, {1300, 0}, {1000, 600}});
        Add(top.arefs, aref);
        Add(top.srefs, Reference(leaf, {-500, 0}));
        ComputeCellBounds(top, GdsTransform());
    }

    GdsCell leaf;
    GdsCell top;
};

TEST_F(PlacedContentTest, HoldsTheBoxesOfPolygonsAndOfCells) {
    ContentTable table(1000);
    const PlacedContent* content = table.Of(top, GdsTransform());
    ASSERT_NE(content, nullptr);
    EXPECT_FALSE(content->empty);
    EXPECT_TRUE(content->bounded);
    EXPECT_EQ(content->polygonBox, (GdsRect{-400, 200, 1460, 880}));
    EXPECT_EQ(content->wholeBox, (GdsRect{-500, 0, 1460, 880}));
}

TEST_F(PlacedContentTest, CountsSmallPolygonsUnderTheirPlacement) {
    ContentTable belowAll(31);
    EXPECT_EQ(belowAll.Of(top, GdsTransform())->small, 1u);  // those in the array are magnified
    EXPECT_FALSE(belowAll.Of(top, GdsTransform())->allSmall);
    ContentTable aboveAll(61);
    EXPECT_EQ(aboveAll.Of(top, GdsTransform())->small, 10u);
    EXPECT_TRUE(aboveAll.Of(top, GdsTransform())->allSmall);
    ContentTable none(30);
    EXPECT_EQ(none.Of(top, GdsTransform())->small, 0u);
}

TEST_F(PlacedContentTest, LooksAtTheLinearPartAlone) {
    ContentTable table(10);
    const PlacedContent* content = table.Of(top, GdsTransform());
    EXPECT_EQ(table.Of(top, {0, 777, -888, 1.0, 0.0}), content);
    EXPECT_NE(table.Of(top, {0x8000, 0, 0, 1.0, 0.0}), content);
    EXPECT_EQ(table.Of(top, {0x8000, 5, 5, 1.0, 0.0})->polygonBox,
              (GdsRect{-400, -880, 1460, -200}));
    EXPECT_EQ(table.Of(top, {0, 0, 0, 2.0, 0.0})->polygonBox, (GdsRect{-800, 400, 2920, 1760}));
}

TEST_F(PlacedContentTest, IsEmptyWithoutPolygonsAtAnyDepth) {
    GdsCell hollow;
    GdsCell above;
    Add(above.srefs, Reference(hollow, {2147483647, 2147483647}));
    Add(above.srefs, Reference(hollow, {-2147483647, 0}));
    ComputeCellBounds(above, GdsTransform());
    ContentTable table(10);
    EXPECT_TRUE(table.Of(above, GdsTransform())->empty);
    EXPECT_TRUE(table.Of(hollow, GdsTransform())->empty);
    Add(above.srefs, Reference(leaf, {0, 0}));
    ContentTable another(10);
    EXPECT_FALSE(another.Of(above, GdsTransform())->empty);
}

TEST_F(PlacedContentTest, IsUnboundedWhereCoordinatesLeave32Bits) {
    GdsCell above;
    Add(above.srefs, Reference(top, {2147483647 - 1000, 0}));
    ComputeCellBounds(above, GdsTransform());
    ContentTable table(10);
    const PlacedContent* content = table.Of(above, GdsTransform());
    EXPECT_FALSE(content->bounded);
    EXPECT_FALSE(StaysBounded(*content, {-5000, 0, -5000, 0}));
    const PlacedContent* inside = table.Of(top, GdsTransform());
    EXPECT_TRUE(StaysBounded(*inside, {0, 0, 2147483646 - 1460, 0}));
    EXPECT_FALSE(StaysBounded(*inside, {0, 0, 2147483647 - 1460, 0}));
    EXPECT_FALSE(StaysBounded(*inside, {-2147483648LL + 500, 0, 0, 0}));
    // Unbounded below is unbounded above, also where the own offset leads back.
    GdsCell back;
    Add(back.srefs, Reference(above, {-2000000000, 0}));
    ComputeCellBounds(back, GdsTransform());
    EXPECT_FALSE(table.Of(back, GdsTransform())->bounded);
}

TEST_F(PlacedContentTest, WorksOutEachOfManyPathsOnce) {
    std::vector<GdsCell> cells(200);
    Add(cells[0].boundaries, Rectangle(0, 0, 3, 3));
    for (std::size_t i = 1; i < cells.size(); ++i) {
        Add(cells[i].srefs, Reference(cells[i - 1], {1, 0}));
        Add(cells[i].srefs, Reference(cells[i - 1], {0, 1}));
    }
    ComputeCellBounds(cells.back(), GdsTransform());
    ContentTable table(10);
    EXPECT_EQ(table.Of(cells.back(), GdsTransform())->polygonBox, (GdsRect{0, 0, 202, 202}));
    EXPECT_EQ(table.Of(cells[40], GdsTransform())->small, std::uint64_t{1} << 40);
}

TEST_F(PlacedContentTest, GoesDown200000Levels) {
    std::vector<GdsCell> cells(200000);
    Add(cells[0].boundaries, Rectangle(0, 0, 3, 3));
    for (std::size_t i = 1; i < cells.size(); ++i) {
        Add(cells[i].srefs, Reference(cells[i - 1], {1, 0}));
    }
    ComputeCellBounds(cells.back(), GdsTransform());
    ContentTable table(10);
    EXPECT_EQ(table.Of(cells.back(), GdsTransform())->polygonBox, (GdsRect{199999, 0, 200002, 3}));
}

TEST_F(PlacedContentTest, StopsWhereTheTableIsFull) {
    // Every path has an angle of its own.
    std::vector<GdsCell> cells(40);
    Add(cells[0].boundaries, Rectangle(0, 0, 3, 3));
    for (std::size_t i = 1; i < cells.size(); ++i) {
        Add(cells[i].srefs, Reference(cells[i - 1], {1, 0}));
        Add(cells[i].srefs, Reference(cells[i - 1], {0, 1}));
        cells[i].srefs.back().angle = 1.0 / static_cast<double>(std::uint64_t{1} << i);
    }
    ComputeCellBounds(cells.back(), GdsTransform());
    ContentTable table(10);
    EXPECT_EQ(table.Of(cells.back(), GdsTransform()), nullptr);
    EXPECT_NE(table.Of(cells[0], GdsTransform()), nullptr);
}

TEST_F(PlacedContentTest, ASubcellWhoseStoredBoxMissesTheRectangleHidesItsPolygons) {
    // The polygon lies in the rectangle, but the box stored in its cell does not reach there.
    leaf.bounds = {-100000, -100000, -99990, -99990};
    for (const std::size_t patience : {0, 1000}) {
        ExtractionScope scope;
        scope.window.x0 = scope.window.y0 = -10000;
        scope.window.x1 = scope.window.y1 = 10000;
        scope.window.minSize = 1000;
        scope.limits.patience = patience;
        GdsCell above;
        Add(above.srefs, Reference(top, {0, 0}));
        EXPECT_EQ(CollectCellPolygons(scope, {&above, GdsTransform()}), std::nullopt);
        EXPECT_EQ(scope.skipped, 0u) << patience;
    }
}

}  // namespace
}  // namespace zelmo
