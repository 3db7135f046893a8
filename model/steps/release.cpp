#include <cstring>
#include <memory>
#include <string>

#include "model/cover_map.h"
#include "model/process_model.h"
#include "model/steps/steps.h"
#include "shell/debug_trace.h"

namespace zelmo {

void ExecuteRelease(ProcessModel& model, const ProcessStep& step) {
    DebugTrace("Executing release");
    for (const std::string& target : step.targets) {
        for (const std::unique_ptr<Layer>& layer : model.layers) {
            if (layer != nullptr && std::strcmp(layer->material.c_str(), target.c_str()) == 0) {
                layer->top = layer->bottom;
                layer->meshDirty = true;
            }
        }
    }
    UpdateCoverMap(model);
}

}  // namespace zelmo
