#include <algorithm>
#include <cstring>
#include <memory>
#include <string>

#include "base/debug_trace.h"
#include "model/cover_map.h"
#include "model/process.h"
#include "model/stack.h"
#include "model/steps/steps.h"

namespace zelmo {

namespace {

bool IsTarget(const Layer& layer, const ProcessStep& step) {
    return std::ranges::any_of(step.targets, [&layer](const std::string& target) {
        return std::strcmp(layer.material.c_str(), target.c_str()) == 0;
    });
}

}  // namespace

void ExecuteRelease(Stack& stack, const Grid& grid, const ProcessStep& step) {
    DebugTrace("Executing release");
    for (const std::unique_ptr<Layer>& layer : stack.layers) {
        if (layer != nullptr && IsTarget(*layer, step)) {
            MarkChanged(*layer);
        }
    }
    for (const std::unique_ptr<Layer>& layer : stack.layers) {
        if (layer != nullptr && IsTarget(*layer, step)) {
            layer->top = layer->bottom;
        }
    }
    UpdateCoverMap(stack, grid);
}

}  // namespace zelmo
