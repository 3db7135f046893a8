#include "render/visible/layer_stack.h"

#include "model/grid/grid.h"
#include "model/grid/shown_window.h"
#include "model/stack.h"

namespace zelmo {

namespace {

bool HasItsGrid(const Layer& layer) {
    const auto cells = static_cast<std::size_t>(layer.cols) * static_cast<std::size_t>(layer.rows);
    return layer.cols > 0 && layer.rows > 0 && layer.top.size() == cells &&
           layer.bottom.size() == cells;
}

}  // namespace

std::optional<LayerStack> FindStack(const Stack& source, const Grid& grid) {
    LayerStack stack;
    const ShownWindow window = FindShownWindow(grid);
    for (std::size_t slot = 0; slot < source.layers.size(); ++slot) {
        const Layer* layer = source.layers[slot].get();
        if (layer == nullptr) {
            continue;
        }
        const bool fits = HasItsGrid(*layer) && layer->cols == grid.columns &&
                          layer->rows == grid.rows && layer->spacing == grid.spacing;
        if (!fits) {
            return std::nullopt;
        }
        stack.layers.emplace_back(*layer, window.marginCols, window.marginRows);
        stack.slots.push_back(slot);
    }
    if (stack.layers.empty() || stack.layers[0].cols < 2 || stack.layers[0].rows < 2) {
        return std::nullopt;
    }
    stack.cols = stack.layers[0].cols;
    stack.rows = stack.layers[0].rows;
    stack.spacing = grid.spacing;
    return stack;
}

}  // namespace zelmo
