#include "gds/polygon_extraction.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

#include "gds/gds_database.h"
#include "model/process_model.h"
#include "tests/gds/layout_file.h"
#include "tests/support/recording_console.h"

// From a process model's grid to the polygons on its masks.

namespace zelmo {
namespace {

using Lines = std::vector<std::string>;

constexpr double smallestPositive = 2.2250738585072014e-308;

class ExtractPolygonsTest : public testing::Test {
protected:
    /// A grid of 10 by 10 micrometres at the origin, of pitch 0.1.
    ExtractPolygonsTest() {
        model.settings.cellName = "TOP";
        model.grid.width = 10.0f;
        model.grid.height = 10.0f;
        model.grid.spacing = 0.1f;
    }

    template <typename Write>
    void Extract(Write write) {
        const LoadedLayout loaded = LoadCell(write);
        ASSERT_EQ(loaded.result, 0);
        console.lines.clear();
        ExtractPolygons(model, &console, loaded.database);
    }

    ProcessModel model;
    RecordingConsole console;
};

TEST_F(ExtractPolygonsTest, ReportsHowManyPolygonsItFoundAndTheSmallest) {
    Extract([](GdsWriter& writer) {
        writer.Rectangle(3, 1000, 1000, 3000, 2000);
        writer.Rectangle(4, 2000, 500, 2340, 4500);
    });
    EXPECT_EQ(console.lines, (Lines{"", "Extracting polygons",
                                    "Extracted 2 polygons with smallest size 0.34 um"}));
}

TEST_F(ExtractPolygonsTest, ReportsTheStartValueWhereThereAreNoPolygons) {
    Extract([](GdsWriter& writer) { writer.Rectangle(3, -2000, -2000, -1000, -1000); });
    EXPECT_TRUE(model.polygons.empty());
    EXPECT_TRUE(model.rawPolygons.empty());
    EXPECT_EQ(console.lines, (Lines{"", "Extracting polygons",
                                    "Extracted 0 polygons with smallest size 1.8e+308 um"}));
}

TEST_F(ExtractPolygonsTest, WarnsOfPolygonsBelowTheResolution) {
    model.grid.spacing = 0.120120123f;
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

TEST_F(ExtractPolygonsTest, KeepsASquareOfExactlyTheResolution) {
    const auto square = [](GdsWriter& writer) { writer.Rectangle(1, 10, 10, 110, 110); };
    model.grid.spacing = 100.5f / 1000.0f;  // 100 units
    Extract(square);
    EXPECT_EQ(model.polygons.size(), 1u);
    model.grid.spacing = 101.5f / 1000.0f;  // 101 units
    Extract(square);
    EXPECT_TRUE(model.polygons.empty());
    EXPECT_EQ(console.lines.back(),
              "WARNING: skipped 1 polygons smaller than the resolution of 0.101 um");
}

TEST_F(ExtractPolygonsTest, LeavesOutAPolygonOnTheGridsEdgeWithoutCountingIt) {
    Extract([](GdsWriter& writer) {
        writer.Rectangle(1, 10000, 0, 10001, 5000);
        writer.Rectangle(2, 9999, 0, 20000, 5000);
    });
    EXPECT_EQ(console.lines.back(), "Extracted 1 polygons with smallest size 5 um");
    ASSERT_EQ(model.polygons.size(), 1u);
    EXPECT_EQ(model.polygons[0].layer, 2u);
}

TEST_F(ExtractPolygonsTest, MovesCoordinatesToTheGridsCorner) {
    model.grid.originX = -2.5f;
    model.grid.originY = 1.25f;
    Extract([](GdsWriter& writer) { writer.Rectangle(9, -1000, 2000, 1000, 5000); });
    ASSERT_EQ(model.rawPolygons.size(), 1u);
    EXPECT_EQ(model.rawPolygons[0].layer, 9);
    EXPECT_EQ(
        model.rawPolygons[0].points,
        (std::vector<GdsPoint>{{1500, 750}, {3500, 750}, {3500, 3750}, {1500, 3750}, {1500, 750}}));
    ASSERT_EQ(model.polygons.size(), 1u);
    const MaskPolygon& polygon = model.polygons[0];
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

TEST_F(ExtractPolygonsTest, SumsTheFarCornerInSinglePrecision) {
    // 1 + 16777216 is 16777216 in single precision: the polygon touches the rectangle only.
    model.grid.originX = 1.0f;
    model.grid.width = 16777216.0f;
    GdsWriter writer;
    writer.BeginLibrary(1.0, 1e-6);
    writer.BeginCell("TOP");
    writer.Rectangle(1, 16777216, 0, 16777300, 100);
    writer.Rectangle(2, 16777215, 0, 16777300, 100);
    writer.EndCell();
    const LoadedLayout loaded = Load(writer);
    ExtractPolygons(model, &console, loaded.database);
    ASSERT_EQ(model.polygons.size(), 1u);
    EXPECT_EQ(model.polygons[0].layer, 2u);
}

TEST_F(ExtractPolygonsTest, TruncatesTheRectangleTowardZero) {
    model.grid.originX = -0.0019f;  // -1.9 units: -1
    Extract([](GdsWriter& writer) {
        writer.Rectangle(1, -5000, 0, -1, 3000);
        writer.Rectangle(2, -5000, 0, 0, 3000);
    });
    ASSERT_EQ(model.polygons.size(), 1u);
    EXPECT_EQ(model.polygons[0].layer, 2u);
}

TEST_F(ExtractPolygonsTest, RoundsLargeCoordinatesToSinglePrecision) {
    model.grid.width = 100000.0f;
    Extract([](GdsWriter& writer) { writer.Rectangle(1, 16777217, 0, 33554435, 1000); });
    ASSERT_EQ(model.polygons.size(), 1u);
    EXPECT_EQ(model.rawPolygons[0].points[0].x, 16777217);
    const float unit = static_cast<float>(1e-9 * 1000000.0);
    EXPECT_EQ(model.polygons[0].points[0].x, static_cast<double>(16777216.0f * unit));
    EXPECT_EQ(model.polygons[0].points[1].x, static_cast<double>(33554436.0f * unit));
}

TEST_F(ExtractPolygonsTest, LeavesTheTinyStartValueAsMaximumOfNegativeCoordinates) {
    // Turned by 45 degrees, a corner of the sliver's box reaches into the grid, but no point of it.
    model.grid.originX = 0.0105f;
    Extract([](GdsWriter& writer) {
        writer.Reference("SLIVER", {0, 0}, {false, 1.0, 45.0});
        writer.EndCell();
        writer.BeginCell("SLIVER");
        writer.Boundary(1, {{0, 0}, {0, 1000}, {50, 1000}});
    });
    ASSERT_EQ(model.polygons.size(), 1u);
    for (const MaskPoint& point : model.polygons[0].points) {
        EXPECT_LT(point.x, 0.0);
    }
    EXPECT_EQ(model.polygons[0].maxX, smallestPositive);
    EXPECT_EQ(model.polygons[0].minX, model.polygons[0].points[1].x);
    EXPECT_EQ(console.lines.back(), "Extracted 1 polygons with smallest size 0.717 um");
}

TEST_F(ExtractPolygonsTest, RepeatsTheFirstPointOfPolygonsAndPathsAtTheEnd) {
    Extract([](GdsWriter& writer) {
        writer.Rectangle(1, 1000, 1000, 2000, 2000);
        writer.Path(2, {{1000, 1000}, {2000, 1000}}, 200);
    });
    ASSERT_EQ(model.polygons.size(), 2u);
    for (const MaskPolygon& polygon : model.polygons) {
        ASSERT_EQ(polygon.points.size(), 5u);
        EXPECT_EQ(polygon.points.front().x, polygon.points.back().x);
        EXPECT_EQ(polygon.points.front().y, polygon.points.back().y);
    }
}

TEST_F(ExtractPolygonsTest, ReplacesThePolygonsOfTheExtractionBefore) {
    for (int run = 0; run < 2; ++run) {
        Extract([](GdsWriter& writer) { writer.Rectangle(1, 1000, 1000, 2000, 2000); });
        EXPECT_EQ(model.polygons.size(), 1u);
        EXPECT_EQ(model.rawPolygons.size(), 1u);
    }
}

TEST_F(ExtractPolygonsTest, FindsTheFirstOfTwoCellsOfTheName) {
    Extract([](GdsWriter& writer) {
        writer.Rectangle(1, 1000, 1000, 2000, 2000);
        writer.EndCell();
        writer.BeginCell("TOP");
        writer.Rectangle(2, 1000, 1000, 2000, 2000);
    });
    ASSERT_EQ(model.polygons.size(), 1u);
    EXPECT_EQ(model.polygons[0].layer, 1u);
}

TEST_F(ExtractPolygonsTest, FindsACellWhoseNameIsPadded) {
    const LoadedLayout loaded = LoadCell([](GdsWriter& writer) {
        writer.RecordText(record::strname, std::string_view("ODD", 3));
        writer.Rectangle(1, 1000, 1000, 2000, 2000);
    });
    model.settings.cellName = "ODD";
    ExtractPolygons(model, &console, loaded.database);
    EXPECT_EQ(model.polygons.size(), 1u);
}

/// Expects the extraction to fail with nothing but its last line, and the model to stay.
void ExpectFailure(ProcessModel& model, RecordingConsole& console, const GdsDatabase& database,
                   const std::string& line) {
    model.rawPolygons.resize(3);
    model.polygons.resize(2);
    try {
        ExtractPolygons(model, &console, database);
        FAIL() << "no exception";
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "");
    }
    EXPECT_EQ(console.lines, (Lines{"", "Extracting polygons", line}));
    EXPECT_EQ(model.rawPolygons.size(), 3u);
    EXPECT_EQ(model.polygons.size(), 2u);
}

TEST_F(ExtractPolygonsTest, FailsForACellThatIsNotThere) {
    const LoadedLayout loaded = LoadCell([](GdsWriter&) {});
    model.settings.cellName = "NOWHERE";
    ExpectFailure(model, console, loaded.database,
                  "ERROR: Cell name NOWHERE was not found in the GDS database");
}

TEST_F(ExtractPolygonsTest, FailsForANameThatDiffersInCase) {
    const LoadedLayout loaded = LoadCell([](GdsWriter&) {});
    model.settings.cellName = "Top";
    ExpectFailure(model, console, loaded.database,
                  "ERROR: Cell name Top was not found in the GDS database");
}

TEST_F(ExtractPolygonsTest, FailsAtTenMillionPolygons) {
    // 3200 by 3125 instances are exactly that many: the very last polygon reaches the limit. They
    // have no points, which saves their memory.
    GdsDatabase database;
    database.cells.resize(2);
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
    ExpectFailure(model, console, database, "ERROR: Reached the maximum number of polygons");
}

}  // namespace
}  // namespace zelmo
