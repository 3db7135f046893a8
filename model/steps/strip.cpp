#include <memory>
#include <utility>

#include "base/debug_trace.h"
#include "model/cover_map.h"
#include "model/process_model.h"
#include "model/steps/steps.h"

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
