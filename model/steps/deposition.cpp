#include <cstddef>
#include <utility>

#include "base/debug_trace.h"
#include "model/cover_map.h"
#include "model/offset/surface_offset.h"
#include "model/process_model.h"
#include "model/steps/steps.h"

namespace zelmo {

void ExecuteDeposition(ProcessModel& model, const ProcessStep& step) {
    DebugTrace("Executing deposition");
    auto layer = CreateLayer(model.gridRows, model.gridColumns, model.gridSpacing, model.graphics);
    layer->material = step.material;
    layer->label = step.label;
    layer->color = step.color;
    layer->alpha = step.alpha;

    for (std::size_t cell = 0; cell < model.CellCount(); ++cell) {
        layer->bottom[cell] = model.coverMap[cell].height;
    }
    OffsetSurface(model, layer->top, layer->bottom, step.thickness, step.stepCoverage);
    for (std::size_t cell = 0; cell < model.CellCount(); ++cell) {
        const float bottom = layer->bottom[cell];
        // Also where the offset is no number there is no film.
        layer->top[cell] = layer->top[cell] > bottom ? layer->top[cell] : bottom;
    }
    AppendLayer(model, std::move(layer));
    UpdateCoverMap(model);
}

}  // namespace zelmo
