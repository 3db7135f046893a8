#include <cstddef>
#include <utility>

#include "model/grid/grid.h"
#include "model/stack.h"
#include "model/steps/steps.h"

namespace zelmo {

void ExecuteSubstrate(Stack& stack, const Grid& grid, float windowWidth, const ProcessStep& step) {
    auto layer = CreateLayer(grid, step);
    layer->material = "_SUB_";
    layer->label = "SUBSTRATE";
    layer->alpha = 1.0f;

    // In proportion to the window, so that it looks the same at every scale.
    stack.substrateThickness = windowWidth * 0.05f;
    for (std::size_t cell = 0; cell < grid.CellCount(); ++cell) {
        CoverCell& cover = stack.coverMap[cell];
        layer->bottom[cell] = cover.height;
        layer->top[cell] = layer->bottom[cell] + stack.substrateThickness;
        cover = {0, layer->top[cell]};
    }
    AppendLayer(stack, std::move(layer));
}

}  // namespace zelmo
