#include <cstddef>
#include <utility>

#include "base/debug_trace.h"
#include "model/cover_map.h"
#include "model/grid/grid.h"
#include "model/offset/surface_offset.h"
#include "model/process.h"
#include "model/stack.h"
#include "model/steps/steps.h"

namespace zelmo {

void ExecuteDeposition(Stack& stack, const Grid& grid, const ProcessStep& step) {
    DebugTrace("Executing deposition");
    auto layer = CreateLayer(grid, step);

    for (std::size_t cell = 0; cell < grid.CellCount(); ++cell) {
        layer->bottom[cell] = stack.coverMap[cell].height;
    }
    OffsetSurface(grid, layer->top, layer->bottom, step.thickness, step.stepCoverage);
    for (std::size_t cell = 0; cell < grid.CellCount(); ++cell) {
        const float bottom = layer->bottom[cell];
        // Also where the offset is no number there is no film.
        layer->top[cell] = layer->top[cell] > bottom ? layer->top[cell] : bottom;
    }
    AppendLayer(stack, std::move(layer));
    UpdateCoverMap(stack, grid);
}

}  // namespace zelmo
