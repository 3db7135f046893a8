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
    auto layer = CreateLayer(model.grid, step);

    for (std::size_t cell = 0; cell < model.grid.CellCount(); ++cell) {
        layer->bottom[cell] = model.stack.coverMap[cell].height;
    }
    OffsetSurface(model.grid, layer->top, layer->bottom, step.thickness, step.stepCoverage);
    for (std::size_t cell = 0; cell < model.grid.CellCount(); ++cell) {
        const float bottom = layer->bottom[cell];
        // Also where the offset is no number there is no film.
        layer->top[cell] = layer->top[cell] > bottom ? layer->top[cell] : bottom;
    }
    AppendLayer(model.stack, std::move(layer));
    UpdateCoverMap(model.stack, model.grid);
}

}  // namespace zelmo
