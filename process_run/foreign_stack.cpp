#include "process_run/foreign_stack.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <memory>

#include "model/grid/grid.h"
#include "model/stack.h"

namespace zelmo {

namespace {

bool AreNumbers(const SharedArray<float>& heights) {
    return std::all_of(heights.begin(), heights.end(),
                       [](float height) { return std::isfinite(height); });
}

std::string WhyNoLayer(const Layer& layer, std::size_t slot, const Grid& grid) {
    for (const SharedArray<float>* surface : {&layer.top, &layer.bottom}) {
        if (surface->size() != grid.CellCount()) {
            return fmt::format("a surface of layer {} has {} cells and the grid {}", slot + 1,
                               surface->size(), grid.CellCount());
        }
        if (!AreNumbers(*surface)) {
            return fmt::format("a surface of layer {} has heights that are no numbers", slot + 1);
        }
    }
    return {};
}

/// Whether a cell of the cover map names a layer that is there.
bool IsLayer(const Stack& stack, const CoverCell& cell) {
    return cell.layerId >= 0 && static_cast<std::size_t>(cell.layerId) < stack.layers.size() &&
           stack.layers[static_cast<std::size_t>(cell.layerId)] != nullptr &&
           std::isfinite(cell.height);
}

}  // namespace

std::string WhyNoStack(const Stack& stack, const Grid& grid) {
    if (stack.layers.empty() || stack.layers.front() == nullptr) {
        return "it has no substrate";
    }
    for (std::size_t slot = 0; slot < stack.layers.size(); ++slot) {
        if (const Layer* const layer = stack.layers[slot].get()) {
            if (std::string reason = WhyNoLayer(*layer, slot, grid); !reason.empty()) {
                return reason;
            }
        }
    }
    if (stack.coverMap.size() != grid.CellCount()) {
        return fmt::format("its cover map has {} cells and the grid {}", stack.coverMap.size(),
                           grid.CellCount());
    }
    if (!std::all_of(stack.coverMap.begin(), stack.coverMap.end(),
                     [&](const CoverCell& cell) { return IsLayer(stack, cell); })) {
        return "its cover map names layers that are not there";
    }
    return std::isfinite(stack.substrateThickness) ? std::string()
                                                   : "its substrate has no thickness";
}

}  // namespace zelmo
