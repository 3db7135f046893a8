#include "gds/cell_places.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <tuple>
#include <vector>

#include "gds/array_lattice.h"
#include "gds/cell_order.h"
#include "gds/placed_boxes.h"
#include "tests/gds/layout_file.h"
#include "tests/gds/random_layout.h"

// Places that are found cell by cell, against cells that are laid out flat.

namespace zelmo {
namespace {

/// Calls `use` with all that a placed cell refers to, and its placement.
template <typename Use>
void ForEachInstance(const GdsCell& cell, const GdsTransform& transform, Use use) {
    const LinearPart linear = LinearPartOf(transform);
    for (const GdsSref& sref : cell.srefs) {
        use(*sref.cell,
            PlaceChild(sref.origin, sref.mag, sref.angle, sref.strans, transform, linear));
    }
    for (const GdsAref& aref : cell.arefs) {
        const ArrayLattice lattice = LatticeOf(aref);
        for (std::int32_t i = 0; i < aref.columns * aref.rows; ++i) {
            const GdsPoint origin =
                InstancePosition(lattice, PositionRule::Truncate64, i / aref.rows, i % aref.rows);
            use(*aref.cell,
                PlaceChild(origin, aref.mag, aref.angle, aref.strans, transform, linear));
        }
    }
}

void PlainBox(const GdsCell& cell, const GdsTransform& transform, GdsRect& box) {
    const LinearPart linear = LinearPartOf(transform);
    for (const GdsBoundary& boundary : cell.boundaries) {
        for (const GdsPoint point : boundary.points) {
            WidenByPoint(box, PlacePoint(point, transform, linear));
        }
    }
    ForEachInstance(cell, transform, [&](const GdsCell& child, const GdsTransform& placed) {
        PlainBox(child, placed, box);
    });
}

void PlainPlaces(const GdsCell& cell, const GdsTransform& transform, const GdsCell& target,
                 std::vector<GdsRect>& boxes) {
    ForEachInstance(cell, transform, [&](const GdsCell& child, const GdsTransform& placed) {
        if (&child == &target) {
            PlainBox(child, placed, boxes.emplace_back());
        } else {
            PlainPlaces(child, placed, target, boxes);
        }
    });
}

std::vector<GdsRect> FirstOf(std::vector<GdsRect> boxes, std::size_t most) {
    std::sort(boxes.begin(), boxes.end(), [](const GdsRect& a, const GdsRect& b) {
        return std::tuple(a.ymin, a.xmin, a.ymax, a.xmax) <
               std::tuple(b.ymin, b.xmin, b.ymax, b.xmax);
    });
    boxes.resize(std::min(boxes.size(), most));
    return boxes;
}

/// Returns how many places there are.
std::size_t ExpectPlaces(const GdsDatabase& database, std::size_t within, std::size_t cell) {
    std::vector<GdsRect> boxes;
    PlainPlaces(database.cells[within], {}, database.cells[cell], boxes);
    GdsRect drawn;
    PlainBox(database.cells[cell], {}, drawn);
    for (const std::size_t most : {1, 7, 100, 100000}) {
        const CellPlaces places = FindPlaces(database, within, cell, most);
        EXPECT_EQ(places.count, CountOf(boxes.size()));
        EXPECT_FALSE(places.beyondLimits);
        EXPECT_EQ(places.boxes, IsNothing(drawn) ? std::vector<GdsRect>() : FirstOf(boxes, most));
        EXPECT_EQ(places.hasShapes, boxes.empty() || !IsNothing(drawn));
    }
    return boxes.size();
}

TEST(CellPlaces, AreThoseOfCellsThatAreLaidOutFlat) {
    std::mt19937 random(41);
    std::size_t places = 0;
    for (int round = 0; round < 1500; ++round) {
        RandomLayoutSettings settings;
        settings.cells = 2 + round % 7;
        settings.arraySide = 6;
        const GdsDatabase database = RandomLayout(random, settings);
        for (std::size_t i = 0; i < database.cells.size() * database.cells.size(); ++i) {
            const std::size_t within = i / database.cells.size();
            const std::size_t cell = i % database.cells.size();
            if (cell != within) {
                places += ExpectPlaces(database, within, cell);
            }
        }
        ASSERT_FALSE(testing::Test::HasFailure()) << round;
    }
    EXPECT_GT(places, 100000u);
}

/// C0 has an array of C1, and so on, down to a rectangle.
GdsDatabase TowerOfArrays(int levels, const GdsWriterPlacement& placement, std::uint16_t side) {
    GdsWriter writer;
    writer.BeginLibrary();
    for (int level = 0; level < levels; ++level) {
        writer.BeginCell(fmt::format("C{}", level));
        writer.Array(fmt::format("C{}", level + 1), side, side, {0, 0}, {20 * side, 0},
                     {0, 30 * side}, placement);
        writer.EndCell();
    }
    writer.BeginCell(fmt::format("C{}", levels));
    writer.Rectangle(7, 0, 0, 10, 10);
    writer.EndCell();
    writer.EndLibrary();
    return std::move(Load(writer).database);
}

TEST(CellPlaces, AreFoundInArraysOfArraysOfArrays) {
    const GdsDatabase straight = TowerOfArrays(3, {}, 30000);
    const CellPlaces places = FindPlaces(straight, 0, 3, 10000);
    EXPECT_NEAR(places.count.estimate, 7.29e26, 1e20);
    ASSERT_EQ(places.boxes.size(), 10000u);
    EXPECT_EQ(places.boxes[0], (GdsRect{0, 0, 10, 10}));
    EXPECT_EQ(places.boxes[1], (GdsRect{20, 0, 30, 10}));
    EXPECT_EQ(places.boxes[4], (GdsRect{40, 0, 50, 10}));
    const GdsDatabase flat = TowerOfArrays(1, {}, 30000);
    EXPECT_EQ(FindPlaces(flat, 0, 1, 10000).boxes.back(), (GdsRect{199980, 0, 199990, 10}));
}

TEST(CellPlaces, AreFoundInTurnedArraysToo) {
    for (const GdsWriterPlacement& placement :
         {GdsWriterPlacement{false, 1.0, 90.0}, GdsWriterPlacement{true, 1.0, 30.0},
          GdsWriterPlacement{false, 0.5, 211.3}}) {
        const GdsDatabase turned = TowerOfArrays(3, placement, 3000);
        const CellPlaces places = FindPlaces(turned, 0, 3, 100);
        EXPECT_EQ(places.boxes.size(), 100u) << placement.degrees;
    }
}

TEST(CellPlaces, OnTopOfEachOtherCountAsOften) {
    GdsWriter writer;
    writer.BeginLibrary();
    for (int level = 0; level < 40; ++level) {
        writer.BeginCell(fmt::format("C{}", level));
        writer.Reference(fmt::format("C{}", level + 1), {1, 2});
        writer.Reference(fmt::format("C{}", level + 1), {1, 2});
        writer.EndCell();
    }
    writer.BeginCell("C40");
    writer.Rectangle(7, 0, 0, 100, 50);
    writer.EndCell();
    writer.EndLibrary();
    const CellPlaces places = FindPlaces(Load(writer).database, 0, 40, 3);
    EXPECT_EQ(places.count, CountOf(std::uint64_t{1} << 40));
    EXPECT_EQ(places.boxes, std::vector<GdsRect>(3, {40, 80, 140, 130}));
}

TEST(CellPlaces, AreNotSoughtBeyondTheLimits) {
    const GdsDatabase database = TowerOfTurns();
    const CellPlaces places = FindPlaces(database, 0, 30, 5, {.turns = 1000});
    EXPECT_EQ(places.count, CountOf(std::uint64_t{1} << 30));
    EXPECT_TRUE(places.beyondLimits);
    EXPECT_TRUE(places.boxes.empty());
    EXPECT_TRUE(FindPlaces(database, 24, 30, 64, {.steps = 20}).beyondLimits);
    EXPECT_TRUE(FindPlaces(database, 24, 30, 64, {.waiting = 1}).beyondLimits);
    EXPECT_EQ(FindPlaces(database, 24, 30, 64).boxes.size(), 64u);
}

}  // namespace
}  // namespace zelmo
