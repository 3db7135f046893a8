#include <cstddef>
#include <cstdint>
#include <memory>

#include "model/grid/grid.h"
#include "model/grid/shown_window.h"
#include "model/stack.h"

namespace zelmo {

namespace {

/// Whether the layer has thickness, which NaN counts as, at any of some neighbouring cells.
bool IsThickAnywhere(const Layer& layer, std::size_t first, std::int32_t count) {
    bool thick = false;
    for (std::size_t i = first; i < first + static_cast<std::size_t>(count); ++i) {
        thick |= !(layer.top[i] - layer.bottom[i] == 0.0f);
    }
    return thick;
}

/// Whether the layer has anything to show. What shows are squares between cells, and the front edge
/// between two columns: a window that is one cell wide has neither, one of a single row the second.
bool IsShown(const Layer& layer, const ShownWindow& window) {
    if (window.cols < 2) {
        return false;
    }
    for (std::int32_t row = 0; row < window.rows; ++row) {
        if (IsThickAnywhere(layer, window.GridIndex(0, row), window.cols)) {
            return true;
        }
    }
    return false;
}

}  // namespace

void SettleStack(Stack& stack, const Grid& grid) {
    const ShownWindow window = FindShownWindow(grid);
    stack.layerCount = 0;
    for (std::unique_ptr<Layer>& layer : stack.layers) {
        if (layer != nullptr && layer->changed) {
            layer->changed = false;
            if (!IsShown(*layer, window)) {
                layer.reset();
            }
        }
        stack.layerCount += layer != nullptr ? 1 : 0;
    }
}

}  // namespace zelmo
