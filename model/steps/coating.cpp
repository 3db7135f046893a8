#include "model/steps/coat_layer.h"

#include <utility>

#include "base/debug_trace.h"
#include "model/cover_map.h"
#include "model/process.h"
#include "model/stack.h"
#include "model/steps/steps.h"

namespace zelmo {

void ExecuteCoating(Stack& stack, const Grid& grid, const ProcessStep& step) {
    DebugTrace("Executing coating");
    auto layer = CreateLayer(grid, step);
    CoatLayer(grid, stack.coverMap, *layer, step.thickness, step.dop);
    AppendLayer(stack, std::move(layer));
    UpdateCoverMap(stack, grid);
}

}  // namespace zelmo
