#include "gds/layout_contents.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "gds/array_lattice.h"
#include "gds/cell_order.h"
#include "gds/gds_database.h"
#include "gds/text_places.h"
#include "tests/gds/layout_file.h"
#include "tests/gds/random_layout.h"

// What is worked out cell by cell, against cells that are laid out flat.

namespace zelmo {
namespace {

using LayerKey = std::pair<std::uint16_t, std::uint16_t>;

struct FlatLayer {
    std::uint64_t shapes = 0;
    std::uint64_t texts = 0;
    double area = 0.0;
    GdsRect box;
};

/// All that a cell contains, laid out.
struct FlatCell {
    std::map<LayerKey, FlatLayer> layers;
    std::uint64_t shapes = 0;
    GdsRect box;
    std::vector<PlacedText> texts;
};

double PlainArea(const GdsBoundary& boundary) {
    double sum = 0.0;
    for (std::size_t i = 0; i < boundary.points.size(); ++i) {
        const GdsPoint a = boundary.points[i];
        const GdsPoint b = boundary.points[(i + 1) % boundary.points.size()];
        sum += static_cast<double>(a.x) * static_cast<double>(b.y) -
               static_cast<double>(b.x) * static_cast<double>(a.y);
    }
    return std::abs(sum) / 2.0;
}

std::span<const GdsText> TextsOf(const GdsDatabase& database, const GdsCell& cell) {
    for (const CellTexts& texts : database.texts) {
        if (&database.cells[texts.cell] == &cell) {
            return texts.texts;
        }
    }
    return {};
}

void LayOut(const GdsDatabase& database, const GdsCell& cell, const GdsTransform& transform,
            FlatCell& flat) {
    const LinearPart linear = LinearPartOf(transform);
    for (const GdsBoundary& boundary : cell.boundaries) {
        FlatLayer& layer = flat.layers[{boundary.layer, boundary.datatype}];
        ++layer.shapes;
        ++flat.shapes;
        layer.area += PlainArea(boundary) * transform.mag * transform.mag;
        for (const GdsPoint point : boundary.points) {
            const GdsPoint placed = PlacePoint(point, transform, linear);
            MergeRect(layer.box, {placed.x, placed.y, placed.x, placed.y});
            MergeRect(flat.box, {placed.x, placed.y, placed.x, placed.y});
        }
    }
    for (const GdsText& text : TextsOf(database, cell)) {
        ++flat.layers[{text.layer, text.texttype}].texts;
        flat.texts.push_back(
            {text.layer, text.texttype, PlacePoint(text.origin, transform, linear), text.string});
    }
    for (const GdsSref& sref : cell.srefs) {
        LayOut(database, *sref.cell,
               PlaceChild(sref.origin, sref.mag, sref.angle, sref.strans, transform, linear), flat);
    }
    for (const GdsAref& aref : cell.arefs) {
        const ArrayLattice lattice = LatticeOf(aref);
        for (std::int32_t column = 0; column < aref.columns; ++column) {
            for (std::int32_t row = 0; row < aref.rows; ++row) {
                const GdsPoint origin =
                    InstancePosition(lattice, PositionRule::Truncate64, column, row);
                LayOut(database, *aref.cell,
                       PlaceChild(origin, aref.mag, aref.angle, aref.strans, transform, linear),
                       flat);
            }
        }
    }
}

/// A few texts in some of the cells.
void AddTexts(GdsDatabase& database, std::mt19937& random) {
    for (std::size_t cell = 0; cell < database.cells.size(); ++cell) {
        std::span<GdsText> texts;
        for (std::uint32_t i = random() % 3; i > 0; --i) {
            Add(texts, {static_cast<std::uint16_t>(random() % 3),
                        0,
                        true,
                        {RandomInteger(random, -900, 900), RandomInteger(random, -900, 900)},
                        KeepName(fmt::format("text{}", random() % 5))});
        }
        if (!texts.empty()) {
            database.texts.push_back({cell, texts});
        }
    }
}

void ExpectLayers(const CellLayers& found, const FlatCell& flat) {
    EXPECT_TRUE(found.haveBoxes);
    ASSERT_EQ(found.layers.size(), flat.layers.size());
    auto row = found.layers.begin();
    for (const auto& [key, layer] : flat.layers) {
        EXPECT_EQ(LayerKey(row->layer, row->datatype), key);
        EXPECT_EQ(row->shapes, CountOf(layer.shapes));
        EXPECT_EQ(row->texts, CountOf(layer.texts));
        EXPECT_NEAR(row->area, layer.area, 1e-9 * layer.area);
        EXPECT_EQ(row->box, layer.box);
        ++row;
    }
}

TEST(LayoutContents, AreThoseOfCellsThatAreLaidOutFlat) {
    std::mt19937 random(77);
    std::uint64_t shapes = 0;
    for (int round = 0; round < 1500; ++round) {
        RandomLayoutSettings settings;
        settings.cells = 2 + round % 7;
        settings.arraySide = 6;
        GdsDatabase database = RandomLayout(random, settings);
        AddTexts(database, random);
        const std::vector<CellContents> cells = CountCells(database);
        ASSERT_EQ(cells.size(), database.cells.size());
        for (std::size_t i = 0; i < cells.size(); ++i) {
            SCOPED_TRACE(testing::Message() << "round " << round << ", cell " << i);
            FlatCell flat;
            LayOut(database, database.cells[i], {}, flat);
            EXPECT_EQ(cells[i].shapes, CountOf(flat.shapes));
            EXPECT_EQ(cells[i].texts, CountOf(flat.texts.size()));
            EXPECT_EQ(cells[i].box, flat.box);
            EXPECT_TRUE(cells[i].hasBox);
            EXPECT_FALSE(cells[i].isEndless);
            ExpectLayers(CountLayers(database, i), flat);
            EXPECT_EQ(FindTexts(database, i, 1000000), flat.texts);
            const std::size_t some = flat.texts.size() / 2;
            flat.texts.resize(some);
            EXPECT_EQ(FindTexts(database, i, some), flat.texts);
            shapes += flat.shapes;
        }
    }
    EXPECT_GT(shapes, 200000u);
}

/// Cells A0 to A<levels>, each an array of the next.
GdsDatabase Tower(int levels) {
    GdsWriter writer;
    writer.BeginLibrary();
    for (int level = 0; level < levels; ++level) {
        writer.BeginCell(fmt::format("A{}", level));
        writer.Array(fmt::format("A{}", level + 1), 30000, 30000, {0, 0}, {30000, 0}, {0, 30000});
        writer.EndCell();
    }
    writer.BeginCell(fmt::format("A{}", levels));
    writer.Rectangle({1, 2}, 0, 0, 10, 10);
    writer.Record(record::text);
    writer.RecordI32(record::xy, {3, 4});
    writer.RecordText(record::string, "deep");
    writer.Record(record::endel);
    writer.EndCell();
    writer.EndLibrary();
    return std::move(LoadBytes(writer.Bytes(), {.texts = true}).database);
}

TEST(LayoutContents, TellWhatIsMoreThanAnyIntegerHolds) {
    const GdsDatabase two = Tower(2);
    const std::uint64_t many = 900000000ull * 900000000ull;
    EXPECT_EQ(CountCells(two)[0].shapes, CountOf(many));
    EXPECT_EQ(CountLayers(two, 0).layers.at(1).area, 100.0 * static_cast<double>(many));
    EXPECT_EQ(CountCells(two)[0].box, (GdsRect{0, 0, 2 * 29999 + 10, 2 * 29999 + 10}));

    const FlatCount three = CountCells(Tower(3))[0].shapes;
    EXPECT_FALSE(three.isExact);
    EXPECT_NEAR(three.estimate, 7.29e26, 1e20);

    const GdsDatabase high = Tower(40);
    const CellLayers layers = CountLayers(high, 0);
    EXPECT_EQ(CountCells(high)[0].shapes.estimate, std::numeric_limits<double>::infinity());
    EXPECT_EQ(layers.layers.at(1).area, std::numeric_limits<double>::infinity());
    EXPECT_EQ(layers.layers.at(1).box, (GdsRect{0, 0, 40 * 29999 + 10, 40 * 29999 + 10}));
    EXPECT_FALSE(layers.layers.at(0).texts.isExact);
    EXPECT_EQ(FindTexts(high, 0, 3),
              (std::vector<PlacedText>{
                  {0, 0, {3, 4}, "deep"}, {0, 0, {3, 5}, "deep"}, {0, 0, {3, 6}, "deep"}}));
}

TEST(LayoutContents, SayWhereTurnsAreTooManyToFollow) {
    const GdsDatabase database = TowerOfTurns();
    const ContentLimits limits{.turns = 5000, .turnedElements = 100000};
    const std::vector<CellContents> cells = CountCells(database, limits);
    EXPECT_FALSE(cells[0].hasBox);
    EXPECT_EQ(cells[0].shapes, CountOf(std::uint64_t{1} << 30));
    EXPECT_TRUE(cells[30].hasBox);
    const CellLayers layers = CountLayers(database, 0, limits);
    EXPECT_FALSE(layers.haveBoxes);
    EXPECT_EQ(layers.layers.at(0).shapes, CountOf(std::uint64_t{1} << 30));
    EXPECT_NEAR(layers.layers.at(0).area, 5000.0 * 0x1p30, 1.0);
}

TEST(LayoutContents, TellOnlyItsOwnOfACellThatContainsItself) {
    GdsWriter writer;
    writer.BeginLibrary();
    for (const auto& [name, child] : std::vector<std::pair<const char*, const char*>>{
             {"TOP", "A"}, {"A", "B"}, {"B", "A"}, {"SELF", "SELF"}, {"GOOD", "LEAF"}}) {
        writer.BeginCell(name);
        writer.Rectangle(7, 0, 0, 100, 50);
        writer.Reference(child, {0, 0});
        writer.EndCell();
    }
    writer.BeginCell("LEAF");
    writer.Rectangle(7, 0, 0, 100, 50);
    writer.EndCell();
    writer.EndLibrary();
    const LoadedLayout loaded = Load(writer);
    ASSERT_EQ(loaded.error->kind, LayoutErrorKind::CellInItself);
    const std::vector<CellContents> cells = CountCells(loaded.database);
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_TRUE(cells[i].isEndless) << i;
        EXPECT_FALSE(cells[i].hasBox);
        EXPECT_EQ(cells[i].shapes, CountOf(1));
        EXPECT_EQ(cells[i].ownPlacements, 1u);
    }
    EXPECT_FALSE(cells[4].isEndless);
    EXPECT_EQ(cells[4].shapes, CountOf(2));
    EXPECT_TRUE(cells[0].isTop);
    EXPECT_FALSE(cells[1].isTop);
    EXPECT_FALSE(cells[2].isTop);
    EXPECT_TRUE(cells[3].isTop);
    EXPECT_FALSE(cells[5].isTop);
}

TEST(LayoutContents, AreaIsThatOfThePolygonWhicheverWayRoundAndWithoutRounding) {
    const auto area = [](const std::vector<NarrowPoint>& points) {
        GdsBoundary boundary;
        boundary.points = std::span<const NarrowPoint>(points);
        return AreaOf(boundary);
    };
    EXPECT_EQ(area({}), 0.0);
    EXPECT_EQ(area({{1, 1}}), 0.0);
    EXPECT_EQ(area({{0, 0}, {10, 0}}), 0.0);
    EXPECT_EQ(area({{0, 0}, {10, 0}, {0, 5}}), 25.0);
    EXPECT_EQ(area({{0, 0}, {0, 5}, {10, 0}, {0, 0}}), 25.0);
    constexpr std::int32_t least = std::numeric_limits<std::int32_t>::min();
    constexpr std::int32_t most = std::numeric_limits<std::int32_t>::max();
    EXPECT_EQ(area({{least, least}, {most, least}, {most, most}, {least, most}}),
              4294967295.0 * 4294967295.0);
    const std::vector<GdsPoint> wide{{0, 0}, {1ll << 40, 0}, {1ll << 40, 1ll << 40}};
    GdsBoundary boundary;
    boundary.points = std::span<const GdsPoint>(wide);
    EXPECT_EQ(AreaOf(boundary), 0x1p79);
}

TEST(LayoutContents, AreThereHoweverDeepCellsAreNested) {
    GdsDatabase database;
    constexpr std::size_t depth = 100000;
    AddCells(database, depth);
    for (std::size_t i = 0; i + 1 < depth; ++i) {
        GdsSref sref;
        sref.cell = &CellAt(database, i + 1);
        sref.mag = 1.0;
        sref.origin = {1, 0};
        Add(CellAt(database, i).srefs, sref);
    }
    GdsBoundary boundary;
    boundary.points = KeepPoints({{0, 0}, {1, 0}, {1, 1}});
    boundary.bounds = {0, 0, 1, 1};
    Add(CellAt(database, depth - 1).boundaries, boundary);
    EXPECT_EQ(CountCells(database)[0].box, (GdsRect{depth - 1, 0, depth, 1}));
    EXPECT_EQ(CountLayers(database, 0).layers.at(0).box, (GdsRect{depth - 1, 0, depth, 1}));
}

}  // namespace
}  // namespace zelmo
