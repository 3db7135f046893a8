#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>
#include <vector>

#include "base/debug_trace.h"
#include "base/row_bands.h"
#include "model/cover_map.h"
#include "model/grid/grid.h"
#include "model/offset/surface_offset.h"
#include "model/process.h"
#include "model/stack.h"
#include "model/steps/etch_lanes.h"
#include "model/steps/steps.h"

namespace zelmo {

namespace {

constexpr float targetWeight = 1.0f;
constexpr float resistWeight = 0.5f;

/// One weight for each slot: a layer with any weight can be etched, all to the same front.
std::vector<float> EtchWeights(const Stack& stack, const std::vector<std::string>& targets) {
    std::vector<float> weights(stack.layers.size(), 0.0f);
    for (const std::string& target : targets) {
        for (std::size_t id = 0; id < stack.layers.size(); ++id) {
            const Layer* layer = stack.layers[id].get();
            if (layer == nullptr) {
                continue;
            }
            if (std::strcmp(layer->material.c_str(), target.c_str()) == 0) {
                weights[id] = targetWeight;
            }
            // Any etch attacks the resist as well, named or not.
            if (layer->isPhotoresist) {
                weights[id] = resistWeight;
            }
        }
    }
    return weights;
}

/// A stretch of cells that stays in the nearest cache while the layers go by.
constexpr std::size_t stretch = 2048;

/// What an etch lowers a surface to.
struct EtchFronts {
    std::vector<float> front;        ///< for the targets
    std::vector<float> resistFront;  ///< empty where it is the same for the resist
};

/// Lowers the resist to a front of its own, which can lie above that of the targets: what it covers
/// after that is closed. Returns whether any cells stay open.
bool EtchResist(const EtchedCells& cells) {
    return ZELMO_PICK_LANES(LowerToFront)(cells) && ZELMO_PICK_LANES(CloseWhereThick)(cells);
}

/// Lowers the layers of some cells to the front, from the top of the stack down to the first
/// material that stands. Slot 0, the substrate, is never etched.
void EtchStretch(Stack& stack, const std::vector<float>& weights, const EtchFronts& fronts,
                 std::size_t first, std::size_t count) {
    std::array<std::int32_t, stretch> open;  // NOLINT(*-member-init): filled in the next line
    open.fill(-1);
    bool anyOpen = true;
    for (std::size_t id = stack.layers.size(); anyOpen && id-- > 1;) {
        Layer* layer = stack.layers[id].get();
        if (layer == nullptr) {
            continue;
        }
        EtchedCells cells{&layer->top[first], &layer->bottom[first], &fronts.front[first],
                          open.data(), static_cast<std::int32_t>(count)};
        if (weights[id] == 0.0f) {
            anyOpen = ZELMO_PICK_LANES(CloseWhereThick)(cells);
        } else if (layer->isPhotoresist && !fronts.resistFront.empty()) {
            cells.front = &fronts.resistFront[first];
            anyOpen = EtchResist(cells);
        } else {
            anyOpen = ZELMO_PICK_LANES(LowerToFront)(cells);
        }
    }
}

void EtchLayers(Stack& stack, const std::vector<float>& weights, const EtchFronts& fronts) {
    const std::size_t cells = fronts.front.size();
    const std::size_t stretches = (cells + stretch - 1) / stretch;
    ForRowBands(static_cast<std::int32_t>(stretches), 8,
                [&](std::int32_t firstStretch, std::int32_t endStretch) {
                    for (std::int32_t i = firstStretch; i < endStretch; ++i) {
                        const std::size_t first = static_cast<std::size_t>(i) * stretch;
                        const std::size_t count = std::min(stretch, cells - first);
                        EtchStretch(stack, weights, fronts, first, count);
                    }
                });
}

EtchFronts FrontsOf(const Stack& stack, const Grid& grid, const ProcessStep& step) {
    std::vector<float> surface(grid.CellCount());
    for (std::size_t cell = 0; cell < surface.size(); ++cell) {
        surface[cell] = stack.coverMap[cell].height;
    }
    EtchFronts fronts;
    fronts.front.resize(grid.CellCount());
    OffsetSurface(grid, fronts.front, surface, -step.depth, step.iso);
    if (step.resistRate != 1.0f) {
        fronts.resistFront.resize(grid.CellCount());
        OffsetSurface(grid, fronts.resistFront, surface, -step.depth * step.resistRate, step.iso);
    }
    return fronts;
}

}  // namespace

void ExecuteEtch(Stack& stack, const Grid& grid, const ProcessStep& step) {
    DebugTrace("Executing etch");
    const std::vector<float> weights = EtchWeights(stack, step.targets);
    const EtchFronts fronts = FrontsOf(stack, grid, step);

    for (std::size_t id = 0; id < stack.layers.size(); ++id) {
        if (weights[id] != 0.0f) {
            MarkChanged(*stack.layers[id]);
        }
    }
    EtchLayers(stack, weights, fronts);
    UpdateCoverMap(stack, grid);
}

}  // namespace zelmo
