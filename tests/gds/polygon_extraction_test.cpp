#include "gds/polygon_extraction.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "tests/gds/layout_file.h"

// From a database, a cell's name and a rectangle to polygons as plain values.

namespace zelmo {
namespace {

const ExtractionWindow everywhere{-1000000, -1000000, 1000000, 1000000, 0};

TEST(ExtractPolygons, GivesPointsFromTheRectanglesCornerAndTheLayer) {
    const LoadedLayout loaded = LoadCell([](GdsWriter& writer) {
        writer.Rectangle(9, -1000, 2000, 1000, 5000);
        writer.Rectangle(8, 2000, 2000, 2009, 5000);
        writer.Rectangle(7, 20000, 2000, 30000, 5000);
    });
    const PolygonExtraction found =
        ExtractPolygons(loaded.database, "TOP", {-2500, 1250, 10000, 10000, 10});
    EXPECT_EQ(found.refusal, std::nullopt);
    EXPECT_EQ(found.skipped, 1u);
    ASSERT_EQ(found.polygons.size(), 1u);
    EXPECT_EQ(found.polygons[0].layer, 9);
    EXPECT_EQ(
        found.polygons[0].points,
        (std::vector<GdsPoint>{{1500, 750}, {3500, 750}, {3500, 3750}, {1500, 3750}, {1500, 750}}));
}

TEST(ExtractPolygons, KeepsEveryDigitOfLargeCoordinates) {
    const LoadedLayout loaded =
        LoadCell([](GdsWriter& writer) { writer.Rectangle(1, 16777217, 0, 33554435, 1000); });
    const PolygonExtraction found =
        ExtractPolygons(loaded.database, "TOP", {0, 0, 100000000, 10000, 0});
    ASSERT_EQ(found.polygons.size(), 1u);
    EXPECT_EQ(found.polygons[0].points[0].x, 16777217);
}

TEST(ExtractPolygons, FindsTheFirstOfTwoCellsOfTheName) {
    const LoadedLayout loaded = LoadCell([](GdsWriter& writer) {
        writer.Rectangle(1, 1000, 1000, 2000, 2000);
        writer.EndCell();
        writer.BeginCell("TOP");
        writer.Rectangle(2, 1000, 1000, 2000, 2000);
    });
    const PolygonExtraction found = ExtractPolygons(loaded.database, "TOP", everywhere);
    ASSERT_EQ(found.polygons.size(), 1u);
    EXPECT_EQ(found.polygons[0].layer, 1);
}

TEST(ExtractPolygons, FindsACellWhoseNameIsPadded) {
    const LoadedLayout loaded = LoadCell([](GdsWriter& writer) {
        writer.RecordText(record::strname, "ODD");
        writer.Rectangle(1, 1000, 1000, 2000, 2000);
    });
    EXPECT_EQ(ExtractPolygons(loaded.database, "ODD", everywhere).polygons.size(), 1u);
}

TEST(ExtractPolygons, RefusesANameThatNoCellHas) {
    const LoadedLayout loaded = LoadCell([](GdsWriter&) {});
    for (const char* const name : {"NOWHERE", "Top", ""}) {
        EXPECT_EQ(ExtractPolygons(loaded.database, name, everywhere).refusal,
                  ExtractionRefusal::UnknownCell);
    }
}

TEST(ExtractPolygons, GivesNoPolygonsWithARefusal) {
    const LoadedLayout loaded = LoadCell([](GdsWriter& writer) {
        writer.Rectangle(1, 1000, 1000, 2000, 2000);
        writer.Rectangle(1, 1000, 1000, 2000, 2000);
    });
    ExtractionLimits limits;
    limits.polygons = 2;
    const PolygonExtraction found = ExtractPolygons(loaded.database, "TOP", everywhere, limits);
    EXPECT_EQ(found.refusal, ExtractionRefusal::TooManyPolygons);
    EXPECT_TRUE(found.polygons.empty());
}

TEST(ExtractPolygons, MayTestEveryElementOnceHoweverManySelectNothing) {
    const LoadedLayout loaded = LoadCell([](GdsWriter& writer) {
        for (int i = 0; i < 1000; ++i) {
            writer.Rectangle(1, 2000000, 0, 2000100, 100);
            writer.Reference("FAR", {2000000, 0});
        }
        writer.EndCell();
        writer.BeginCell("FAR");
        writer.Rectangle(1, 0, 0, 100, 100);
    });
    ExtractionLimits limits;
    limits.fruitlessTests = 0;
    EXPECT_EQ(ExtractPolygons(loaded.database, "TOP", everywhere, limits).refusal, std::nullopt);
}

TEST(PointLimit, IsAsManyAsFillHalfOfTheMemoryButNeverFewerThanAHundredMillion) {
    constexpr std::uint64_t gibibyte = std::uint64_t{1} << 30;
    EXPECT_EQ(PointLimit(0), 100000000u);
    EXPECT_EQ(PointLimit(2 * gibibyte), 100000000u);
    EXPECT_EQ(PointLimit(64 * gibibyte), 2 * gibibyte);
}

}  // namespace
}  // namespace zelmo
