#include "gds/layer_box.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>

#include "tests/gds/layout_file.h"

// The box around chosen polygons of a cell and of all below it.

namespace zelmo {
namespace {

LayerBox BoxOfLayer(const LoadedLayout& loaded, std::uint16_t layer) {
    return FindLayerBox(loaded.database, "TOP",
                        [=](const RawPolygon& polygon) { return polygon.layer == layer; });
}

TEST(FindLayerBox, GoesAroundTheChosenPolygonsOnly) {
    const LoadedLayout loaded = LoadCell([](GdsWriter& writer) {
        writer.Rectangle(7, -5000, -300, -4000, 200);
        writer.Rectangle(7, 100, 0, 900, 700);
        writer.Rectangle(8, -90000, -90000, 90000, 90000);
    });
    const LayerBox found = BoxOfLayer(loaded, 7);
    EXPECT_EQ(found.refusal, std::nullopt);
    EXPECT_EQ(found.box, (GdsRect{-5000, -300, 900, 700}));
}

TEST(FindLayerBox, IsThatOfThePointsAlsoInCellsThatAreTurned) {
    const LoadedLayout loaded = LoadCell([](GdsWriter& writer) {
        writer.Reference("BELOW", {1000, 0}, {false, 1.0, 45.0});
        writer.Reference("BELOW", {0, 500}, {true, 2.0, 90.0});
        writer.EndCell();
        writer.BeginCell("BELOW");
        writer.Boundary(3, {{0, 0}, {1000, 1000}, {1000, -1000}});
    });
    EXPECT_EQ(BoxOfLayer(loaded, 3).box, (GdsRect{-2000, 0, 2414, 2500}));
}

TEST(FindLayerBox, ReachesToTheEndsOfTheFormat) {
    constexpr std::int32_t far = 2147483647;
    const LoadedLayout loaded = LoadCell([](GdsWriter& writer) {
        writer.Rectangle(1, -far - 1, -far - 1, -far + 10, -far + 10);
        writer.Rectangle(1, far - 10, far - 10, far, far);
    });
    EXPECT_EQ(BoxOfLayer(loaded, 1).box,
              (GdsRect{-std::int64_t{far} - 1, -std::int64_t{far} - 1, far, far}));
}

TEST(FindLayerBox, IsNoneWhereNothingIsDrawn) {
    const LoadedLayout loaded = LoadCell([](GdsWriter& writer) {
        writer.Rectangle(1, 0, 0, 1000, 1000);
        writer.Rectangle(2, 0, 0, 1000, 0);
    });
    for (const std::uint16_t layer : {2, 3}) {
        EXPECT_EQ(BoxOfLayer(loaded, layer).box, std::nullopt) << layer;
        EXPECT_EQ(BoxOfLayer(loaded, layer).refusal, std::nullopt) << layer;
    }
}

TEST(FindLayerBox, IsRefusedAsAnExtractionIs) {
    const LoadedLayout loaded =
        LoadCell([](GdsWriter& writer) { writer.Rectangle(1, 0, 0, 1000, 1000); });
    const auto all = [](const RawPolygon&) { return true; };
    EXPECT_EQ(FindLayerBox(loaded.database, "OTHER", all).refusal, ExtractionRefusal::UnknownCell);
    ExtractionLimits limits;
    limits.polygons = 1;
    const LayerBox found = FindLayerBox(loaded.database, "TOP", all, limits);
    EXPECT_EQ(found.refusal, ExtractionRefusal::TooManyPolygons);
    EXPECT_EQ(found.box, std::nullopt);
}

}  // namespace
}  // namespace zelmo
