#pragma once

#include <fmt/format.h>

#include <cstdint>
#include <memory>
#include <utility>

#include "model/grid/places.h"
#include "model/process_model.h"
#include "tests/model/grid_model.h"

namespace zelmo {

/// A model over a random window, with a substrate and random layers above it: some with steep
/// sides, some missing at many cells, some on a gap, and some slots empty.
inline std::unique_ptr<ProcessModel> MakeRandomStack(std::uint32_t seed) {
    TestRandom random(seed);
    auto model = std::make_unique<ProcessModel>();
    model->settings.gridColumns = static_cast<std::int32_t>(12 + random.Below(30));
    model->settings.windowX = 10.0f * random.Unit() - 5.0f;
    model->settings.windowY = 10.0f * random.Unit() - 5.0f;
    model->settings.windowWidth = 1.0f + 9.0f * random.Unit();
    model->settings.windowHeight = model->settings.windowWidth * (0.1f + 0.9f * random.Unit());
    SizeGrid(model->grid, model->settings);
    model->stack.substrateThickness = 0.5f;
    AppendFlatLayer(*model, 0.0f, 0.5f, "_SUB_").label = "SUBSTRATE";
    const std::size_t count = 1 + random.Below(6);
    for (std::size_t i = 0; i < count; ++i) {
        auto layer = CreateLayer(model->grid);
        layer->material = fmt::format("M{}", i);
        layer->label = fmt::format("Film {}", i);
        const Layer* below = model->stack.layers.front().get();
        for (const auto& other : model->stack.layers) {
            below = other != nullptr ? other.get() : below;
        }
        const float gap = random.Below(3) == 0 ? 0.1f : 0.0f;
        for (std::size_t cell = 0; cell < layer->top.size(); ++cell) {
            layer->bottom[cell] = below->top[cell] + gap;
            const float thickness = random.Below(3) == 0 ? 0.0f : 0.2f * random.Unit();
            layer->top[cell] = layer->bottom[cell] + thickness;
        }
        AppendLayer(model->stack, random.Below(5) == 0 ? nullptr : std::move(layer));
    }
    return model;
}

/// A random place in the window of a model.
inline Place RandomPlace(const ProcessModel& model, TestRandom& random) {
    const auto [low, high] = LocationWindow(model.settings);
    return {low.x + (high.x - low.x) * static_cast<double>(random.Unit()),
            low.y + (high.y - low.y) * static_cast<double>(random.Unit())};
}

}  // namespace zelmo
