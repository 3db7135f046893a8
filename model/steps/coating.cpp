#include "model/steps/coat_layer.h"

#include <utility>

#include "base/debug_trace.h"
#include "model/cover_map.h"
#include "model/process_model.h"
#include "model/steps/steps.h"

namespace zelmo {

void ExecuteCoating(ProcessModel& model, const ProcessStep& step) {
    DebugTrace("Executing coating");
    auto layer = CreateLayer(model.gridRows, model.gridColumns, model.gridSpacing, model.graphics);
    layer->material = step.material;
    layer->label = step.label;
    layer->color = step.color;
    layer->alpha = step.alpha;
    CoatLayer(model, *layer, step.thickness, step.dop);
    AppendLayer(model, std::move(layer));
    UpdateCoverMap(model);
}

}  // namespace zelmo
