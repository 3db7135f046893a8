#include "render/visible/layer_stack.h"

#include "base/conversions.h"
#include "model/process_model.h"

namespace zelmo {

namespace {

bool HasItsGrid(const Layer& layer) {
    const auto cells = static_cast<std::size_t>(layer.cols) * static_cast<std::size_t>(layer.rows);
    return layer.cols > 0 && layer.rows > 0 && layer.top.size() == cells &&
           layer.bottom.size() == cells;
}

}  // namespace

std::optional<LayerStack> FindStack(const ProcessModel& model) {
    LayerStack stack;
    const std::int32_t marginCols = TruncateToI32(model.grid.marginX / model.grid.spacing);
    const std::int32_t marginRows = TruncateToI32(model.grid.marginY / model.grid.spacing);
    for (std::size_t slot = 0; slot < model.stack.layers.size(); ++slot) {
        const Layer* layer = model.stack.layers[slot].get();
        if (layer == nullptr) {
            continue;
        }
        const bool fits = HasItsGrid(*layer) && layer->cols == model.grid.columns &&
                          layer->rows == model.grid.rows && layer->spacing == model.grid.spacing;
        if (!fits) {
            return std::nullopt;
        }
        stack.layers.emplace_back(*layer, marginCols, marginRows);
        stack.slots.push_back(slot);
    }
    if (stack.layers.empty() || stack.layers[0].cols < 2 || stack.layers[0].rows < 2) {
        return std::nullopt;
    }
    stack.cols = stack.layers[0].cols;
    stack.rows = stack.layers[0].rows;
    stack.spacing = model.grid.spacing;
    return stack;
}

}  // namespace zelmo
