#include "model/stack.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "model/grid/grid.h"
#include "model/process.h"

namespace zelmo {

std::unique_ptr<Layer> CreateLayer(const Grid& grid) {
    auto layer = std::make_unique<Layer>();
    layer->cols = grid.columns;
    layer->rows = grid.rows;
    layer->spacing = grid.spacing;
    layer->top.assign(grid.CellCount(), 0.0f);
    layer->bottom.assign(grid.CellCount(), 0.0f);
    MarkChanged(*layer);
    return layer;
}

std::unique_ptr<Layer> CreateLayer(const Grid& grid, const ProcessStep& step) {
    std::unique_ptr<Layer> layer = CreateLayer(grid);
    layer->material = step.material;
    layer->label = step.label;
    layer->color = step.color;
    layer->alpha = step.alpha;
    return layer;
}

void AppendLayer(Stack& stack, std::unique_ptr<Layer> layer) {
    auto& layers = stack.layers;
    if (layers.size() == layers.capacity()) {
        layers.reserve(std::max(layers.capacity() + layers.capacity() / 2, layers.size() + 1));
    }
    layers.push_back(std::move(layer));
}

void MarkChanged(Layer& layer) {
    layer.top.Unshare();
    layer.bottom.Unshare();
    layer.changed = true;
    layer.version = std::make_shared<const SurfaceVersion>();
}

Stack CopyStack(const Stack& stack) {
    Stack copy;
    copy.coverMap = stack.coverMap;
    copy.layers.reserve(stack.layers.size());
    for (const std::unique_ptr<Layer>& layer : stack.layers) {
        copy.layers.push_back(layer != nullptr ? std::make_unique<Layer>(*layer) : nullptr);
    }
    copy.substrateThickness = stack.substrateThickness;
    copy.layerCount = stack.layerCount;
    return copy;
}

}  // namespace zelmo
