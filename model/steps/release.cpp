#include <cstring>
#include <memory>
#include <string>

#include "base/debug_trace.h"
#include "model/cover_map.h"
#include "model/process_model.h"
#include "model/steps/steps.h"

namespace zelmo {

void ExecuteRelease(ProcessModel& model, const ProcessStep& step) {
    DebugTrace("Executing release");
    for (const std::string& target : step.targets) {
        for (const std::unique_ptr<Layer>& layer : model.stack.layers) {
            if (layer != nullptr && std::strcmp(layer->material.c_str(), target.c_str()) == 0) {
                layer->top = layer->bottom;
                MarkChanged(*layer);
            }
        }
    }
    UpdateCoverMap(model.stack, model.grid);
}

}  // namespace zelmo
