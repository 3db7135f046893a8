#include "process_run/mask_polygons.h"
#include "model/grid/grid.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "gds/gds_database.h"
#include "tests/gds/layout_file.h"
#include "tests/support/recording_console.h"

// From a grid to the polygons on its masks.

namespace zelmo {
namespace {

using Lines = std::vector<std::string>;

constexpr double smallestPositive = 2.2250738585072014e-308;

/// Ten micrometres each way, at a pitch of 0.1.
Grid GridOf10By10() {
    Grid grid;
    grid.spacing = 0.1f;
    grid.width = 10.0f;
    grid.height = 10.0f;
    return grid;
}

class ExtractMaskPolygonsTest : public testing::Test {
protected:
    template <typename Write>
    void Extract(Write write) {
        const LoadedLayout loaded = LoadCell(write);
        ASSERT_EQ(loaded.result, 0);
        console.lines.clear();
        masks = ExtractMaskPolygons(loaded.database, cellName, grid, &console);
        EXPECT_EQ(masks.failure, "");
    }

    std::string cellName = "TOP";
    Grid grid = GridOf10By10();
    MaskExtraction masks;
    RecordingConsole console;
};

TEST_F(ExtractMaskPolygonsTest, ReportsHowManyPolygonsItFoundAndTheSmallest) {
    Extract([](GdsWriter& writer) {
        writer.Rectangle(3, 1000, 1000, 3000, 2000);
        writer.Rectangle(4, 2000, 500, 2340, 4500);
    });
    EXPECT_EQ(console.lines, (Lines{"", "Extracting polygons",
                                    "Extracted 2 polygons with smallest size 0.34 um"}));
}

TEST_F(ExtractMaskPolygonsTest, ReportsTheStartValueWhereThereAreNoPolygons) {
    Extract([](GdsWriter& writer) { writer.Rectangle(3, -2000, -2000, -1000, -1000); });
    EXPECT_TRUE(masks.polygons.empty());
    EXPECT_EQ(console.lines, (Lines{"", "Extracting polygons",
                                    "Extracted 0 polygons with smallest size 1.8e+308 um"}));
}

TEST_F(ExtractMaskPolygonsTest, WarnsOfPolygonsBelowTheResolution) {
    grid.spacing = 0.120120123f;
    Extract([](GdsWriter& writer) {
        writer.Rectangle(3, 0, 0, 1500, 1500);
        writer.Rectangle(3, 0, 0, 119, 5000);
        writer.Rectangle(3, 0, 0, 5000, 119);
        writer.Rectangle(3, 0, 0, 120, 120);
    });
    EXPECT_EQ(console.lines,
              (Lines{"", "Extracting polygons", "Extracted 2 polygons with smallest size 0.12 um",
                     "WARNING: skipped 2 polygons smaller than the resolution of 0.12 um"}));
}

TEST_F(ExtractMaskPolygonsTest, KeepsASquareOfExactlyTheResolution) {
    const auto square = [](GdsWriter& writer) { writer.Rectangle(1, 10, 10, 110, 110); };
    grid.spacing = 100.5f / 1000.0f;  // 100 units
    Extract(square);
    EXPECT_EQ(masks.polygons.size(), 1u);
    grid.spacing = 101.5f / 1000.0f;  // 101 units
    Extract(square);
    EXPECT_TRUE(masks.polygons.empty());
    EXPECT_EQ(console.lines.back(),
              "WARNING: skipped 1 polygons smaller than the resolution of 0.101 um");
}

TEST_F(ExtractMaskPolygonsTest, LeavesOutAPolygonOnTheGridsEdgeWithoutCountingIt) {
    Extract([](GdsWriter& writer) {
        writer.Rectangle(1, 10000, 0, 10001, 5000);
        writer.Rectangle(2, 9999, 0, 20000, 5000);
    });
    EXPECT_EQ(console.lines.back(), "Extracted 1 polygons with smallest size 5 um");
    ASSERT_EQ(masks.polygons.size(), 1u);
    EXPECT_EQ(masks.polygons[0].layer, 2u);
}

TEST_F(ExtractMaskPolygonsTest, MovesCoordinatesToTheGridsCorner) {
    grid.originX = -2.5f;
    grid.originY = 1.25f;
    Extract([](GdsWriter& writer) { writer.Rectangle(9, -1000, 2000, 1000, 5000); });
    ASSERT_EQ(masks.polygons.size(), 1u);
    const MaskPolygon& polygon = masks.polygons[0];
    const float unit = static_cast<float>(1e-9 * 1000000.0);
    EXPECT_EQ(polygon.layer, 9u);
    EXPECT_EQ(polygon.minX, static_cast<double>(1500.0f * unit));
    EXPECT_EQ(polygon.minY, static_cast<double>(750.0f * unit));
    EXPECT_EQ(polygon.maxX, static_cast<double>(3500.0f * unit));
    EXPECT_EQ(polygon.maxY, static_cast<double>(3750.0f * unit));
    ASSERT_EQ(polygon.points.size(), 5u);
    EXPECT_EQ(polygon.points[1].x, static_cast<double>(3500.0f * unit));
    EXPECT_EQ(polygon.points[1].y, static_cast<double>(750.0f * unit));
}

TEST_F(ExtractMaskPolygonsTest, CountsAllLayersAndDatatypesAndTellsThemApart) {
    Extract([](GdsWriter& writer) {
        writer.Rectangle({66, 20}, 1000, 1000, 3000, 2000);
        writer.Rectangle({66, 44}, 2000, 500, 2340, 4500);
        writer.Rectangle({65535, 65535}, 2000, 500, 3000, 4500);
        writer.Rectangle({67, 20}, 0, 0, 10, 10);
    });
    EXPECT_EQ(console.lines,
              (Lines{"", "Extracting polygons", "Extracted 3 polygons with smallest size 0.34 um",
                     "WARNING: skipped 1 polygons smaller than the resolution of "
                     "0.1 um"}));
    ASSERT_EQ(masks.polygons.size(), 3u);
    EXPECT_EQ(masks.polygons[0].layer, 66u);
    EXPECT_EQ(masks.polygons[0].datatype, 20u);
    EXPECT_EQ(masks.polygons[1].layer, 66u);
    EXPECT_EQ(masks.polygons[1].datatype, 44u);
    EXPECT_EQ(masks.polygons[2].layer, 65535u);
    EXPECT_EQ(masks.polygons[2].datatype, 65535u);
}

TEST_F(ExtractMaskPolygonsTest, TakesPolygonsInReachOutsideTheGrid) {
    const LoadedLayout loaded = LoadCell([](GdsWriter& writer) {
        writer.Rectangle(1, 1000, 1000, 2000, 2000);
        writer.Rectangle(2, -3000, 1000, -2500, 2000);
        writer.Rectangle(3, 1000, 12500, 2000, 13000);
        writer.Rectangle(4, 14000, 1000, 15000, 2000);
    });
    grid.originX = 0.125f;
    grid.originY = -0.25f;
    const MaskExtraction near = ExtractMaskPolygons(loaded.database, cellName, grid, &console);
    ASSERT_EQ(near.polygons.size(), 1u);
    const MaskExtraction wide =
        ExtractMaskPolygons(loaded.database, cellName, grid, &console, 3.5f);
    ASSERT_EQ(wide.polygons.size(), 3u);
    EXPECT_EQ(console.lines.back(), "Extracted 3 polygons with smallest size 0.5 um");
    EXPECT_EQ(wide.polygons[1].layer, 2u);
    EXPECT_EQ(wide.polygons[2].layer, 3u);
    for (std::size_t i = 0; i < near.polygons[0].points.size(); ++i) {
        EXPECT_EQ(wide.polygons[0].points[i].x, near.polygons[0].points[i].x);
        EXPECT_EQ(wide.polygons[0].points[i].y, near.polygons[0].points[i].y);
    }
    EXPECT_EQ(wide.polygons[1].minX,
              static_cast<double>(-3125.0f * static_cast<float>(1e-9 * 1000000.0)));
}

TEST_F(ExtractMaskPolygonsTest, SumsTheFarCornerInSinglePrecision) {
    // 1 + 16777216 is 16777216 in single precision: the polygon touches the rectangle only.
    grid.originX = 1.0f;
    grid.width = 16777216.0f;
    GdsWriter writer;
    writer.BeginLibrary(1.0, 1e-6);
    writer.BeginCell("TOP");
    writer.Rectangle(1, 16777216, 0, 16777300, 100);
    writer.Rectangle(2, 16777215, 0, 16777300, 100);
    writer.EndCell();
    const LoadedLayout loaded = Load(writer);
    masks = ExtractMaskPolygons(loaded.database, cellName, grid, &console);
    ASSERT_EQ(masks.polygons.size(), 1u);
    EXPECT_EQ(masks.polygons[0].layer, 2u);
}

TEST_F(ExtractMaskPolygonsTest, TruncatesTheRectangleTowardZero) {
    grid.originX = -0.0019f;  // -1.9 units: -1
    Extract([](GdsWriter& writer) {
        writer.Rectangle(1, -5000, 0, -1, 3000);
        writer.Rectangle(2, -5000, 0, 0, 3000);
    });
    ASSERT_EQ(masks.polygons.size(), 1u);
    EXPECT_EQ(masks.polygons[0].layer, 2u);
}

TEST_F(ExtractMaskPolygonsTest, RoundsLargeCoordinatesToSinglePrecision) {
    grid.width = 100000.0f;
    Extract([](GdsWriter& writer) { writer.Rectangle(1, 16777217, 0, 33554435, 1000); });
    ASSERT_EQ(masks.polygons.size(), 1u);
    const float unit = static_cast<float>(1e-9 * 1000000.0);
    EXPECT_EQ(masks.polygons[0].points[0].x, static_cast<double>(16777216.0f * unit));
    EXPECT_EQ(masks.polygons[0].points[1].x, static_cast<double>(33554436.0f * unit));
}

TEST_F(ExtractMaskPolygonsTest, LeavesTheTinyStartValueAsMaximumOfNegativeCoordinates) {
    // Turned by 45 degrees, a corner of the sliver's box reaches into the grid, but no point of it.
    grid.originX = 0.0105f;
    Extract([](GdsWriter& writer) {
        writer.Reference("SLIVER", {0, 0}, {false, 1.0, 45.0});
        writer.EndCell();
        writer.BeginCell("SLIVER");
        writer.Boundary(1, {{0, 0}, {0, 1000}, {50, 1000}});
    });
    ASSERT_EQ(masks.polygons.size(), 1u);
    for (const MaskPoint& point : masks.polygons[0].points) {
        EXPECT_LT(point.x, 0.0);
    }
    EXPECT_EQ(masks.polygons[0].maxX, smallestPositive);
    EXPECT_EQ(masks.polygons[0].minX, masks.polygons[0].points[1].x);
    EXPECT_EQ(console.lines.back(), "Extracted 1 polygons with smallest size 0.717 um");
}

TEST_F(ExtractMaskPolygonsTest, RepeatsTheFirstPointOfPolygonsAndPathsAtTheEnd) {
    Extract([](GdsWriter& writer) {
        writer.Rectangle(1, 1000, 1000, 2000, 2000);
        writer.Path(2, {{1000, 1000}, {2000, 1000}}, 200);
    });
    ASSERT_EQ(masks.polygons.size(), 2u);
    for (const MaskPolygon& polygon : masks.polygons) {
        ASSERT_EQ(polygon.points.size(), 5u);
        EXPECT_EQ(polygon.points.front().x, polygon.points.back().x);
        EXPECT_EQ(polygon.points.front().y, polygon.points.back().y);
    }
}

TEST_F(ExtractMaskPolygonsTest, TellsOfACellThatIsNotThere) {
    const LoadedLayout loaded = LoadCell([](GdsWriter&) {});
    for (const std::string name : {"NOWHERE", "Top"}) {
        console.lines.clear();
        masks = ExtractMaskPolygons(loaded.database, name, grid, &console);
        EXPECT_EQ(masks.failure, "ERROR: Cell name " + name + " was not found in the GDS database");
        EXPECT_EQ(console.lines, (Lines{"", "Extracting polygons", masks.failure}));
        EXPECT_TRUE(masks.polygons.empty());
    }
}

TEST_F(ExtractMaskPolygonsTest, TellsOfTenMillionPolygons) {
    // 3200 by 3125 instances are exactly that many: the very last polygon reaches the limit. They
    // have no points, which saves their memory.
    GdsDatabase database;
    AddCells(database, 2);
    GdsCell& leaf = database.cells[0];
    Add(leaf.boundaries, {});
    leaf.boundaries[0].bounds = {0, 0, 1000, 1000};
    leaf.bounds = leaf.boundaries[0].bounds;
    leaf.boundsValid = true;
    GdsCell& top = database.cells[1];
    top.name = "TOP";
    Add(top.arefs, {});
    top.arefs[0].cell = &leaf;
    top.arefs[0].mag = 1.0;
    top.arefs[0].columns = 3200;
    top.arefs[0].rows = 3125;
    top.arefs[0].points = KeepPoints({{10, 10}, {10, 10}, {10, 10}});
    masks = ExtractMaskPolygons(database, cellName, grid, &console);
    EXPECT_EQ(masks.failure, "ERROR: Reached the maximum number of polygons");
    EXPECT_EQ(console.lines, (Lines{"", "Extracting polygons", masks.failure}));
    EXPECT_TRUE(masks.polygons.empty());
}

}  // namespace
}  // namespace zelmo
