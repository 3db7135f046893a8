#include "gds/cell_bounds.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "gds/gds_database.h"
#include "tests/gds/cell_elements.h"
#include "tests/gds/layout_file.h"
#include "tests/gds/random_layout.h"
#include "tests/plain/gds_plain.h"
#include "tests/support/case_count.h"
#include "tests/support/recording_console.h"

namespace zelmo {
namespace {

GdsRect SizeAlone(GdsCell& cell) {
    return ComputeCellBounds(cell, GdsTransform());
}

constexpr double quarterTurn = 1.5707963705062866;  // 90 degrees in single precision
constexpr std::uint16_t reflected = 0x8000;

// Boundaries

TEST(ComputeBoundaryBounds, TakesTheBoxOfThePoints) {
    GdsDatabase database;
    AddCells(database, 1);
    Add(database.cells[0].boundaries, {});
    database.cells[0].boundaries[0].points = KeepPoints({{5, -7}, {-3, 20}, {9, 1}});
    RecordingConsole console;
    ComputeBoundaryBounds(database, &console);
    EXPECT_EQ(database.cells[0].boundaries[0].bounds, (GdsRect{-3, -7, 9, 20}));
    EXPECT_TRUE(console.lines.empty());
}

TEST(ComputeBoundaryBounds, WarnsOfEveryPolygonOnALineAndKeepsIt) {
    const LoadedLayout loaded = LoadCell([](GdsWriter& writer) {
        writer.Boundary(1, {{10, 20}, {30, 20}});
        writer.Boundary(1, {{-10, 20}, {-10, -20}});
        writer.Boundary(1, {{4, 4}});
    });
    EXPECT_EQ(loaded.result, 0);
    EXPECT_EQ(CellAt(loaded.database, 0).boundaries.size(), 3u);
    const std::string warning = "WARNING: Zero size boundary element in cell TOP with at ";
    EXPECT_EQ(std::vector(loaded.lines.begin(), loaded.lines.begin() + 3),
              (std::vector<std::string>{warning + "(10, 20)", warning + "(-10, -20)",
                                        warning + "(4, 4)"}));
}

TEST(ComputeBoundaryBounds, ThrowsForAPolygonWithoutPoints) {
    GdsDatabase database;
    AddCells(database, 1);
    Add(database.cells[0].boundaries, {});
    RecordingConsole console;
    EXPECT_THROW(ComputeBoundaryBounds(database, &console), std::out_of_range);
}

TEST(ComputeBoundaryBounds, LeavesTheLimitsOf32BitsWhereAnOutlineLiesBeyondThem) {
    // The outer side of a path at the greatest coordinates lies beyond 32 bits.
    const LoadedLayout loaded = LoadCell([](GdsWriter& writer) {
        writer.Path(1, {{0, 2147483600}, {100, 2147483600}}, 1000);
    });
    EXPECT_EQ(loaded.result, 0);
    EXPECT_EQ(At(CellAt(loaded.database, 0).boundaries, 0).bounds,
              (GdsRect{0, 2147483100, 100, 2147484100}));
}

// Cells

TEST(ComputeCellBounds, StartsFromTheOriginOfTheCell) {
    const LoadedLayout loaded =
        LoadCell([](GdsWriter& writer) { writer.Rectangle(1, 100, 100, 200, 200); });
    EXPECT_EQ(CellAt(loaded.database, 0).bounds, (GdsRect{0, 0, 200, 200}));
    EXPECT_EQ(loaded.lines.back(), "--> \"TOP\" with size dx = 200 by dy = 200");
}

TEST(ComputeCellBounds, GivesACellWithoutGeometryNoSize) {
    GdsCell cell;
    EXPECT_EQ(SizeAlone(cell), (GdsRect{0, 0, 0, 0}));
    EXPECT_TRUE(cell.boundsValid);
}

TEST(ComputeCellBounds, TakesInReferencedCells) {
    const LoadedLayout loaded = LoadCell([](GdsWriter& writer) {
        writer.Reference("CHILD", {1000, 1000});
        writer.EndCell();
        writer.BeginCell("CHILD");
        writer.Rectangle(1, 100, 100, 200, 200);
    });
    EXPECT_EQ(CellAt(loaded.database, 0).bounds, (GdsRect{0, 0, 1200, 1200}));
    EXPECT_EQ(CellAt(loaded.database, 1).bounds, (GdsRect{0, 0, 200, 200}));
}

TEST(ComputeCellBounds, ReturnsTheBoxUnderThePlacementAndStoresItUndone) {
    GdsCell cell;
    Add(cell.boundaries, Rectangle(0, 0, 10, 20));
    const GdsTransform shifted{0, 100, 200, 2.0, 0.0};
    EXPECT_EQ(ComputeCellBounds(cell, shifted), (GdsRect{100, 200, 120, 240}));
    EXPECT_EQ(cell.bounds, (GdsRect{0, 0, 10, 20}));
    EXPECT_EQ(ComputeCellBounds(cell, GdsTransform()), (GdsRect{0, 0, 10, 20}));
}

TEST(ComputeCellBounds, StoresTheBoxThroughThePlacementOfTheFirstVisit) {
    // Seen through a turn by 45 degrees first, the child's box is that of a turned square, and it
    // stays so for good.
    const LoadedLayout turnedFirst = LoadCell([](GdsWriter& writer) {
        writer.Reference("CHILD", {0, 0}, {false, 1.0, 45.0});
        writer.EndCell();
        writer.BeginCell("CHILD");
        writer.Rectangle(1, -100, -100, 100, 100);
    });
    EXPECT_EQ(CellAt(turnedFirst.database, 0).bounds, (GdsRect{-141, -141, 141, 141}));
    EXPECT_EQ(CellAt(turnedFirst.database, 1).bounds, (GdsRect{-199, -199, 199, 199}));
    EXPECT_EQ(turnedFirst.lines.back(), "--> \"CHILD\" with size dx = 398 by dy = 398");

    GdsWriter childFirst;
    childFirst.BeginCell("CHILD");
    childFirst.Rectangle(1, -100, -100, 100, 100);
    childFirst.EndCell();
    EXPECT_EQ(CellAt(Load(childFirst).database, 0).bounds, (GdsRect{-100, -100, 100, 100}));
}

TEST(ComputeCellBounds, ComposesAReflectedTurnUnderAMirroredParent) {
    GdsCell child;
    Add(child.boundaries, Rectangle(0, 0, 100, 10));
    GdsCell twin;
    Add(twin.boundaries, child.boundaries[0]);
    GdsCell parent;
    Add(parent.srefs, Reference(child, {1000, 0}, quarterTurn, reflected));
    // Mirrored twice the child is upright, and it is turned by +90 degrees although the parent is
    // mirrored: a strict composition would turn it by -90. The sine below 1 costs a unit.
    const GdsTransform mirrored{reflected, 0, 0, 1.0, 0.0};
    EXPECT_EQ(ComputeCellBounds(parent, mirrored), (GdsRect{0, 0, 1000, 99}));
    GdsCell same;
    Add(same.srefs, Reference(twin, {1000, 0}, quarterTurn, 0));
    EXPECT_EQ(SizeAlone(same), (GdsRect{0, 0, 1000, 99}));
}

TEST(ComputeCellBounds, IgnoresAbsoluteMagnificationAndAngle) {
    GdsCell child;
    Add(child.boundaries, Rectangle(0, 0, 100, 10));
    GdsCell parent;
    Add(parent.srefs, Reference(child, {0, 0}, 0.0, 0x0006));
    EXPECT_EQ(ComputeCellBounds(parent, {0, 0, 0, 2.0, 0.0}), (GdsRect{0, 0, 200, 20}));
}

TEST(ComputeCellBounds, HoldsSizesAtTheEndsOfTheRange) {
    const LoadedLayout loaded = LoadCell([](GdsWriter& writer) {
        writer.Reference("CHILD", {0, 0}, {false, 1e30, 0.0});
        writer.EndCell();
        writer.BeginCell("CHILD");
        writer.Rectangle(1, -100, -100, 100, 100);
    });
    EXPECT_EQ(loaded.result, 0);
    EXPECT_EQ(loaded.lines.at(2),
              "--> \"TOP\" with size dx = 9223372036854775807 by dy = "
              "9223372036854775807");
}

// Arrays

TEST(ComputeCellBounds, TakesInAllInstancesOfAnArray) {
    const LoadedLayout loaded = LoadCell([](GdsWriter& writer) {
        writer.Array("CHILD", 3, 4, {10, 20}, {310, 20}, {10, 220});
        writer.EndCell();
        writer.BeginCell("CHILD");
        writer.Rectangle(1, 0, 0, 7, 8);
    });
    // The last instance stands at (210, 170).
    EXPECT_EQ(CellAt(loaded.database, 0).bounds, (GdsRect{0, 0, 217, 178}));
}

TEST(ComputeCellBounds, TruncatesPositionsOfPitchesThatAreNotWhole) {
    const LoadedLayout loaded = LoadCell([](GdsWriter& writer) {
        writer.Array("CHILD", 3, 3, {0, 0}, {100, 0}, {0, -100});
        writer.EndCell();
        writer.BeginCell("CHILD");
    });
    // 2 * 33.3 is 66.7, down and up alike.
    EXPECT_EQ(CellAt(loaded.database, 0).bounds, (GdsRect{0, -66, 66, 0}));
}

TEST(ComputeCellBounds, LeavesAnArrayOfNoColumnsOrRowsWithoutInstances) {
    for (const auto& [columns, rows] : {std::pair(0, 3), {3, 0}, {0, 0}}) {
        const LoadedLayout loaded = LoadCell([&, c = columns, r = rows](GdsWriter& writer) {
            writer.Array("CHILD", static_cast<std::uint16_t>(c), static_cast<std::uint16_t>(r),
                         {500, 500}, {800, 500}, {500, 800});
            writer.Rectangle(1, 0, 0, 10, 10);
            writer.EndCell();
            writer.BeginCell("CHILD");
            writer.Rectangle(1, 0, 0, 7, 8);
        });
        EXPECT_EQ(loaded.result, 0);
        EXPECT_EQ(CellAt(loaded.database, 0).bounds, (GdsRect{0, 0, 10, 10}));
        EXPECT_EQ(CellAt(loaded.database, 1).bounds, (GdsRect{0, 0, 7, 8}));
    }
}

TEST(ComputeCellBounds, ThrowsForAnArrayWithoutPoints) {
    GdsCell child;
    GdsCell parent;
    Add(parent.arefs, Array(child, 1, 1, {}, {}, {}));
    parent.arefs.back().points = {};
    EXPECT_THROW(SizeAlone(parent), std::out_of_range);
}

TEST(ComputeCellBounds, SizesNestedArraysOfBillionsOfInstancesAtOnce) {
    GdsWriter writer;
    writer.BeginLibrary();
    writer.BeginCell("A");
    writer.Rectangle(1, 0, 0, 3, 4);
    writer.EndCell();
    for (const auto& [name, child] : {std::pair("B", "A"), {"C", "B"}, {"D", "C"}}) {
        writer.BeginCell(name);
        writer.Array(child, 65535, 65535, {0, 0}, {65535 * 10, 0}, {0, 65535 * 20});
        writer.EndCell();
    }
    writer.EndLibrary();
    const LoadedLayout loaded = Load(writer);
    ASSERT_EQ(loaded.result, 0);
    EXPECT_EQ(loaded.database.cells[1].bounds, (GdsRect{0, 0, 655343, 1310684}));
    EXPECT_EQ(loaded.database.cells[2].bounds, (GdsRect{0, 0, 1310683, 2621364}));
    EXPECT_EQ(loaded.database.cells[3].bounds, (GdsRect{0, 0, 1966023, 3932044}));
}

/// The box of the instances of one array of a sized cell that lie within 40 columns and rows of a
/// corner of the array.
GdsRect BoxAroundCorners(const GdsAref& aref, const GdsTransform& transform) {
    const auto step = [](std::int64_t end, std::int64_t start, std::int32_t count) {
        return static_cast<double>(end - start) / count;
    };
    const std::span<const GdsPoint> p = aref.points;
    const auto nearEnd = [](std::int32_t i, std::int32_t count) {
        return i < 40 || i >= count - 40;
    };
    GdsRect box{0, 0, 0, 0};
    for (std::int32_t i = 0; i < aref.columns; ++i) {
        for (std::int32_t j = 0; nearEnd(i, aref.columns) && j < aref.rows; ++j) {
            if (!nearEnd(j, aref.rows)) {
                continue;
            }
            const double x = step(p[2].x, p[0].x, aref.rows) * j +
                             (step(p[1].x, p[0].x, aref.columns) * i + static_cast<double>(p[0].x));
            const double y = step(p[2].y, p[0].y, aref.rows) * j +
                             (step(p[1].y, p[0].y, aref.columns) * i + static_cast<double>(p[0].y));
            const GdsPoint position{static_cast<std::int64_t>(x), static_cast<std::int64_t>(y)};
            const GdsTransform child = PlaceChild(position, aref.mag, aref.angle, aref.strans,
                                                  transform, LinearPartOf(transform));
            MergeRect(box, TransformRectPlain(aref.cell->bounds, child, false));
        }
    }
    return box;
}

TEST(ComputeCellBounds, SizesAHugeSkewedArrayUnderATurnedParentAtOnce) {
    for (int run = 0; run < 16; ++run) {
        GdsCell child;
        Add(child.boundaries, Rectangle(-5, -5, 5, 5));
        SizeAlone(child);
        GdsCell parent;
        Add(parent.arefs,
            Array(child, 65535, 65535, {7, 9}, {65536001, 43210987}, {-34567891, 61234567}));
        const GdsTransform turned{run % 2 == 0 ? reflected : std::uint16_t{0}, 0, 0, 0.75,
                                  0.4 * run};
        EXPECT_EQ(ComputeCellBounds(parent, turned), BoxAroundCorners(parent.arefs[0], turned));
    }
}

/// Compares one array under one placement with the walk over all its instances.
void ExpectPlainArrayBounds(GdsAref aref, const GdsTransform& transform) {
    GdsCell child;
    Add(child.boundaries, Rectangle(-30, -20, 50, 10));
    aref.cell = &child;
    GdsCell parent;
    Add(parent.arefs, aref);
    PlainCellSizes plain;
    const GdsRect expected = ComputeCellBoundsPlain(plain, parent, transform);
    ASSERT_EQ(ComputeCellBounds(parent, transform), expected);
    ASSERT_EQ(parent.bounds, plain.at(&parent));
    ASSERT_EQ(child.bounds, plain.at(&child));
}

TEST(ComputeCellBounds, FindsTheExtremesOfAnyArrayUnderAnyPlacement) {
    std::mt19937 random(51);
    constexpr double infinity = std::numeric_limits<double>::infinity();
    constexpr double magnifications[] = {1.0,  1.0, 0.5,      3.25,      -1.0,
                                         1e18, 0.0, infinity, -infinity, 1e-3};
    for (std::uint32_t run = 0; run < CaseCount(3000); ++run) {
        const std::int64_t reach = run % 3 == 0 ? 40 : run % 3 == 1 ? 3000 : 2147483647;
        const auto coordinate = [&] { return RandomInteger(random, -reach, reach); };
        GdsAref aref;
        aref.columns = static_cast<std::int32_t>(RandomInteger(random, 1, 24));
        aref.rows = static_cast<std::int32_t>(RandomInteger(random, 1, 24));
        aref.mag = magnifications[random() % std::size(magnifications)];
        aref.angle = RandomAngle(random);
        aref.strans = random() % 2 == 0 ? 0 : reflected;
        std::vector<GdsPoint> points(3);
        for (GdsPoint& point : points) {
            point.x = coordinate();
            point.y = coordinate();
        }
        aref.points = points;
        GdsTransform transform;
        transform.flip = random() % 2 == 0 ? 0 : reflected;
        transform.dx = coordinate();
        transform.dy = coordinate();
        transform.mag = magnifications[random() % std::size(magnifications)];
        transform.angle = RandomAngle(random);
        ExpectPlainArrayBounds(aref, transform);
        if (HasFatalFailure()) {
            FAIL() << "run " << run;
        }
    }
}

TEST(ComputeCellBounds, FindsTheExtremesWhereTruncationHidesTheCorners) {
    // Both pitches run along the line that the turn makes upright: the exact offsets in x are all
    // the same, and which instance lies farthest out is a matter of the truncations.
    std::mt19937 random(52);
    for (int run = 0; run < 300; ++run) {
        const std::int64_t length = RandomInteger(random, 50, 3000);
        GdsAref aref;
        aref.mag = 1.0;
        aref.columns = static_cast<std::int32_t>(RandomInteger(random, 2, 60));
        aref.rows = static_cast<std::int32_t>(RandomInteger(random, 2, 60));
        aref.points = KeepPoints({{0, 0}, {length, length}, {2 * length + 1, 2 * length}});
        const GdsTransform transform{0, 0, 0, 1.0 + static_cast<double>(run) * 0.01,
                                     0.7853981852531433};
        ExpectPlainArrayBounds(aref, transform);
        if (HasFatalFailure()) {
            FAIL() << "run " << run;
        }
    }
}

// Whole layouts against the plain version

void ExpectPlainSizes(GdsDatabase& database) {
    PlainCellSizes plain;
    for (GdsCell& cell : database.cells) {
        ASSERT_EQ(ComputeCellBounds(cell, GdsTransform()),
                  ComputeCellBoundsPlain(plain, cell, GdsTransform()));
    }
    for (const GdsCell& cell : database.cells) {
        ASSERT_TRUE(cell.boundsValid);
        ASSERT_EQ(cell.bounds, plain.at(&cell)) << cell.name;
    }
}

TEST(ComputeCellBounds, GivesTheBitsOfThePlainVersion) {
    std::mt19937 random(53);
    for (std::uint32_t run = 0; run < CaseCount(1500); ++run) {
        RandomLayoutSettings settings;
        settings.cells = static_cast<std::int32_t>(RandomInteger(random, 1, 9));
        settings.reach = run % 3 == 0 ? 30 : run % 3 == 1 ? 20000 : 2147483647;
        settings.arraySide = 6;
        settings.strangeMagnifications = run % 5 == 0;
        GdsDatabase database = RandomLayout(random, settings);
        ExpectPlainSizes(database);
        if (HasFatalFailure()) {
            FAIL() << "run " << run;
        }
    }
}

}  // namespace
}  // namespace zelmo
