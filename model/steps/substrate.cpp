#include <cstddef>
#include <utility>

#include "model/process_model.h"
#include "model/steps/steps.h"
#include "shell/color_table.h"

namespace zelmo {

void ExecuteSubstrate(ProcessModel& model, const ProcessStep&) {
    auto layer = CreateLayer(model.gridRows, model.gridColumns, model.gridSpacing, model.graphics);
    layer->material = "_SUB_";
    layer->label = "SUBSTRATE";
    if (const ColorEntry* beige = FindColor(GetColorTable(), "beige")) {
        layer->color = {static_cast<float>(beige->red) / 255.0f,
                        static_cast<float>(beige->green) / 255.0f,
                        static_cast<float>(beige->blue) / 255.0f};
    }
    layer->alpha = 1.0f;

    // In proportion to the window, so that it looks the same at every scale.
    model.substrateThickness = model.windowWidth * 0.05f;
    for (std::size_t cell = 0; cell < model.CellCount(); ++cell) {
        CoverCell& cover = model.coverMap[cell];
        layer->bottom[cell] = cover.height;
        layer->top[cell] = layer->bottom[cell] + model.substrateThickness;
        cover = {0, layer->top[cell]};
    }
    AppendLayer(model, std::move(layer));
}

}  // namespace zelmo
