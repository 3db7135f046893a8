#include <memory>

#include "base/debug_trace.h"
#include "model/cover_map.h"
#include "model/stack.h"
#include "model/steps/steps.h"

namespace zelmo {

void ExecuteStrip(Stack& stack, const Grid& grid, const ProcessStep&) {
    DebugTrace("Executing strip");
    for (std::unique_ptr<Layer>& slot : stack.layers) {
        if (slot != nullptr && slot->isPhotoresist) {
            slot.reset();
        }
    }
    UpdateCoverMap(stack, grid);
}

}  // namespace zelmo
