#include "results/layer_measurer.h"

#include <cstddef>

#include "model/stack.h"

namespace zelmo {

std::vector<MeasuredLayer> LayerMeasurer::Measure(const Stack& stack) {
    std::vector<MeasuredLayer> layers;
    measured_.resize(stack.layers.size());
    for (std::size_t slot = 0; slot < stack.layers.size(); ++slot) {
        const Layer* const layer = stack.layers[slot].get();
        Measured& measured = measured_[slot];
        if (layer == nullptr) {
            measured = {};
            continue;
        }
        if (measured.version == nullptr || measured.version != layer->version) {
            measured = {layer->version, MeasureLayer(*layer, shares_, stack)};
        }
        layers.push_back({FactsOf(stack, slot), measured.numbers});
    }
    return layers;
}

}  // namespace zelmo
