#include "results/layer_numbers.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "results/layer_facts.h"
#include "tests/results/random_stack.h"

namespace zelmo {
namespace {

/// Square micrometres of the window in the square around a cell: cell by cell, in micrometres.
double AreaOfCell(const ProcessModel& model, std::int32_t col, std::int32_t row) {
    const auto [low, high] = LocationWindow(model.settings);
    const Place place =
        PlaceOnLayout(model.grid, {static_cast<double>(col), static_cast<double>(row)});
    const double half = static_cast<double>(model.grid.spacing) / 2.0;
    const double width = std::min(high.x, place.x + half) - std::max(low.x, place.x - half);
    const double height = std::min(high.y, place.y + half) - std::max(low.y, place.y - half);
    return std::max(width, 0.0) * std::max(height, 0.0);
}

LayerNumbers MeasurePlain(const ProcessModel& model, const Layer& layer) {
    LayerNumbers numbers;
    LayerNumbers::Heights heights{1e9, -1e9, 0.0, 1e9, -1e9};
    for (std::int32_t row = 0; row < model.grid.rows; ++row) {
        for (std::int32_t col = 0; col < model.grid.columns; ++col) {
            const std::size_t cell = CellAt(model, col, row);
            const double top = layer.top[cell];
            const double bottom = layer.bottom[cell];
            const double area = AreaOfCell(model, col, row);
            if (top == bottom || area <= 0.0) {
                continue;
            }
            numbers.area += area;
            numbers.volume += area * (top - bottom);
            const double thickness = (top - bottom) * 1000.0;
            heights.leastThickness = std::min(heights.leastThickness, thickness);
            heights.greatestThickness = std::max(heights.greatestThickness, thickness);
            heights.lowestLevel = std::min(heights.lowestLevel, (bottom - 0.5) * 1000.0);
            heights.highestLevel = std::max(heights.highestLevel, (top - 0.5) * 1000.0);
        }
    }
    if (numbers.area > 0.0) {
        heights.meanThickness = numbers.volume / numbers.area * 1000.0;
        numbers.heights = heights;
    }
    return numbers;
}

TEST(MeasureLayer, EqualsThePlainSumsOnRandomStacks) {
    int measured = 0;
    for (std::uint32_t seed = 1; seed < 80; ++seed) {
        const auto model = MakeRandomStack(seed);
        const WindowShares shares = FindWindowShares(model->grid, model->settings);
        for (const auto& layer : model->stack.layers) {
            if (layer == nullptr) {
                continue;
            }
            const LayerNumbers plain = MeasurePlain(*model, *layer);
            const LayerNumbers numbers = MeasureLayer(*layer, shares, model->stack);
            EXPECT_NEAR(numbers.area, plain.area, 1e-9 * (1.0 + plain.area));
            EXPECT_NEAR(numbers.volume, plain.volume, 1e-9 * (1.0 + plain.volume));
            ASSERT_EQ(numbers.heights.has_value(), plain.heights.has_value());
            if (!plain.heights) {
                continue;
            }
            ++measured;
            EXPECT_NEAR(numbers.heights->leastThickness, plain.heights->leastThickness, 1e-6);
            EXPECT_NEAR(numbers.heights->greatestThickness, plain.heights->greatestThickness, 1e-6);
            EXPECT_NEAR(numbers.heights->meanThickness, plain.heights->meanThickness, 1e-6);
            EXPECT_NEAR(numbers.heights->lowestLevel, plain.heights->lowestLevel, 1e-6);
            EXPECT_NEAR(numbers.heights->highestLevel, plain.heights->highestLevel, 1e-6);
        }
    }
    EXPECT_GT(measured, 100);
}

TEST(MeasureLayer, AFilmOverEverythingHasTheWindowsArea) {
    for (std::uint32_t seed = 1; seed < 40; ++seed) {
        const auto model = MakeRandomStack(seed);
        const double area = static_cast<double>(model->settings.windowWidth) *
                            static_cast<double>(model->settings.windowHeight);
        const LayerNumbers numbers = MeasureLayer(
            *model->stack.layers[0], FindWindowShares(model->grid, model->settings), model->stack);
        EXPECT_NEAR(numbers.area, area, area * 1e-5);
        EXPECT_NEAR(numbers.volume, area * 0.5, area * 1e-5);
        EXPECT_NEAR(numbers.heights->meanThickness, 500.0, 1e-9);
    }
}

TEST(MeasureLayer, ALayerThatIsNowhereInTheWindowHasNothingElse) {
    const auto model = MakeRandomStack(1);
    Layer& layer = AppendFlatLayer(*model, 1.0f, 0.0f);
    layer.top[0] = 2.0f;  // in the margin
    const LayerNumbers numbers =
        MeasureLayer(layer, FindWindowShares(model->grid, model->settings), model->stack);
    EXPECT_EQ(numbers.area, 0.0);
    EXPECT_EQ(numbers.volume, 0.0);
    EXPECT_FALSE(numbers.heights);
}

TEST(NanometresText, HasThreeDecimalsAndNoNegativeZero) {
    EXPECT_EQ(NanometresText(1.0), "1.000");
    EXPECT_EQ(NanometresText(-0.0001), "0.000");
    EXPECT_EQ(NanometresText(-12.3456), "-12.346");
}

}  // namespace
}  // namespace zelmo
