#include "model/steps/typed_layers.h"

#include <algorithm>
#include <cstddef>

#include "model/stack.h"

namespace zelmo {

std::vector<bool> FindTypedLayers(const Stack& stack, std::span<const std::string> materials) {
    std::vector<bool> isTyped(stack.layers.size(), false);
    for (std::size_t id = 1; id < stack.layers.size(); ++id) {
        const Layer* const layer = stack.layers[id].get();
        isTyped[id] = layer != nullptr && !layer->isPhotoresist &&
                      std::ranges::find(materials, layer->material) != materials.end();
    }
    return isTyped;
}

}  // namespace zelmo
