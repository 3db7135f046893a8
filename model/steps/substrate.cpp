#include <cstddef>
#include <utility>

#include "model/process_model.h"
#include "model/steps/steps.h"

namespace zelmo {

void ExecuteSubstrate(ProcessModel& model, const ProcessStep& step) {
    auto layer = CreateLayer(model.grid);
    layer->material = "_SUB_";
    layer->label = "SUBSTRATE";
    layer->color = step.color;
    layer->alpha = 1.0f;

    // In proportion to the window, so that it looks the same at every scale.
    model.stack.substrateThickness = model.settings.windowWidth * 0.05f;
    for (std::size_t cell = 0; cell < model.grid.CellCount(); ++cell) {
        CoverCell& cover = model.stack.coverMap[cell];
        layer->bottom[cell] = cover.height;
        layer->top[cell] = layer->bottom[cell] + model.stack.substrateThickness;
        cover = {0, layer->top[cell]};
    }
    AppendLayer(model.stack, std::move(layer));
}

}  // namespace zelmo
