#include "model/steps/coat_layer.h"

#include <utility>

#include "base/debug_trace.h"
#include "model/cover_map.h"
#include "model/process_model.h"
#include "model/steps/steps.h"

namespace zelmo {

void ExecuteCoating(ProcessModel& model, const ProcessStep& step) {
    DebugTrace("Executing coating");
    auto layer = CreateLayer(model.grid, step);
    CoatLayer(model.grid, model.stack.coverMap, *layer, step.thickness, step.dop);
    AppendLayer(model.stack, std::move(layer));
    UpdateCoverMap(model.stack, model.grid);
}

}  // namespace zelmo
