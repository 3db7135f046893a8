#include <memory>

#include "base/debug_trace.h"
#include "model/cover_map.h"
#include "model/process_model.h"
#include "model/steps/steps.h"

namespace zelmo {

void ExecuteStrip(ProcessModel& model, const ProcessStep&) {
    DebugTrace("Executing strip");
    for (std::unique_ptr<Layer>& slot : model.stack.layers) {
        if (slot != nullptr && slot->isPhotoresist) {
            slot.reset();
        }
    }
    UpdateCoverMap(model.stack, model.grid);
}

}  // namespace zelmo
