#include <memory>
#include <utility>

#include "model/cover_map.h"
#include "model/process_model.h"
#include "model/steps/steps.h"
#include "shell/debug_trace.h"

namespace zelmo {

void ExecuteStrip(ProcessModel& model, const ProcessStep&) {
    DebugTrace("Executing strip");
    for (std::unique_ptr<Layer>& slot : model.layers) {
        if (slot != nullptr && slot->isPhotoresist) {
            std::unique_ptr<Layer> stripped = std::move(slot);
            DestroyLayer(stripped);
        }
    }
    UpdateCoverMap(model);
}

}  // namespace zelmo
