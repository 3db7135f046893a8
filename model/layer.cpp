#include <algorithm>
#include <cstddef>
#include <utility>

#include "model/process_model.h"

namespace zelmo {

// `graphics` is set before the GL objects are made: where their making fails half-way, the
// destructor still gives back what exists. A name that was never made is 0, which deletes nothing.
std::unique_ptr<Layer> CreateLayer(std::int32_t rows, std::int32_t cols, float spacing,
                                   LayerGraphics* graphics) {
    auto layer = std::make_unique<Layer>();
    layer->cols = cols;
    layer->rows = rows;
    layer->spacing = spacing;
    const std::size_t cells = static_cast<std::size_t>(rows) * static_cast<std::size_t>(cols);
    layer->top.assign(cells, 0.0f);
    layer->bottom.assign(cells, 0.0f);
    if (graphics != nullptr) {
        layer->graphics = graphics;
        graphics->CreateLayerObjects(*layer);
    }
    return layer;
}

Layer::~Layer() {
    if (graphics != nullptr) {
        graphics->DestroyLayerObjects(*this);
    }
}

void DestroyLayer(std::unique_ptr<Layer>& layer) {
    layer.reset();
}

void AppendLayer(ProcessModel& model, std::unique_ptr<Layer> layer) {
    auto& layers = model.layers;
    if (layers.size() == layers.capacity()) {
        layers.reserve(std::max(layers.capacity() + layers.capacity() / 2, layers.size() + 1));
    }
    layers.push_back(std::move(layer));
}

HeightMarkers::~HeightMarkers() {
    if (graphics != nullptr) {
        graphics->DestroyMarkerObjects(*this);
    }
}

ProcessModel::ProcessModel() = default;

// Members are destroyed from the last to the first: the markers with their GL objects, then the
// layers with theirs, then the tables and the cover map that the markers point into.
ProcessModel::~ProcessModel() = default;

}  // namespace zelmo
