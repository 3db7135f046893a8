#pragma once

#include <algorithm>
#include <array>
#include <memory>

#include "model/process_model.h"

namespace zelmo {

/// A model without layers over a window of this size in micrometres.
inline std::unique_ptr<ProcessModel> MakeEmptyModel(float width, float height,
                                                    std::int32_t columns) {
    auto model = std::make_unique<ProcessModel>();
    model->settings.gridColumns = columns;
    model->settings.windowWidth = width;
    model->settings.windowHeight = height;
    SizeGrid(model->grid, model->settings);
    model->stack.coverMap.assign(model->grid.CellCount(), CoverCell{});
    return model;
}

/// Puts a film over everything, with the cover on top of it.
inline Layer& AddFilm(ProcessModel& model, float thickness, std::array<float, 3> color) {
    AppendLayer(model.stack, CreateLayer(model.grid));
    Layer& layer = *model.stack.layers.back();
    layer.color = color;
    const auto id = static_cast<std::int32_t>(model.stack.layers.size()) - 1;
    for (std::size_t i = 0; i < model.stack.coverMap.size(); ++i) {
        layer.bottom[i] = model.stack.coverMap[i].height;
        layer.top[i] = layer.bottom[i] + thickness;
        model.stack.coverMap[i] = {id, layer.top[i]};
    }
    return layer;
}

}  // namespace zelmo
