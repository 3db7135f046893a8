#include <cstddef>
#include <cstring>
#include <string>
#include <vector>

#include "model/cover_map.h"
#include "model/process_model.h"
#include "model/steps/steps.h"
#include "model/surface_offset.h"
#include "shell/debug_trace.h"

namespace zelmo {

namespace {

constexpr float targetWeight = 1.0f;
constexpr float resistWeight = 0.5f;

/// One weight for each slot: a layer with any weight can be etched, all to the same front.
std::vector<float> EtchWeights(const ProcessModel& model, const std::vector<std::string>& targets) {
    std::vector<float> weights(model.layers.size(), 0.0f);
    for (const std::string& target : targets) {
        for (std::size_t id = 0; id < model.layers.size(); ++id) {
            const Layer* layer = model.layers[id].get();
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

/// Lowers the layers of one cell to the front, from the top of the stack down to the first material
/// that stands. Slot 0, the substrate, is never etched.
void EtchColumn(ProcessModel& model, const std::vector<float>& weights, std::size_t cell,
                float front) {
    for (std::size_t id = model.layers.size(); id-- > 1;) {
        if (model.layers[id] == nullptr) {
            continue;
        }
        float& top = model.layers[id]->top[cell];
        const float bottom = model.layers[id]->bottom[cell];
        if (top == bottom) {
            continue;
        }
        if (weights[id] == 0.0f) {
            return;
        }
        if (!(top > front)) {
            continue;
        }
        top = front;
        if (!(bottom > top)) {
            return;
        }
        top = bottom;
    }
}

}  // namespace

void ExecuteEtch(ProcessModel& model, const ProcessStep& step) {
    DebugTrace("Executing etch");
    const std::vector<float> weights = EtchWeights(model, step.targets);
    std::vector<float> surface(model.CellCount());
    for (std::size_t cell = 0; cell < surface.size(); ++cell) {
        surface[cell] = model.coverMap[cell].height;
    }
    std::vector<float> front(model.CellCount());
    OffsetSurface(model, front, surface, -step.depth, step.iso);

    for (std::size_t cell = 0; cell < front.size(); ++cell) {
        EtchColumn(model, weights, cell, front[cell]);
    }
    UpdateCoverMap(model);
    for (std::size_t id = 0; id < model.layers.size(); ++id) {
        if (weights[id] != 0.0f) {
            model.layers[id]->meshDirty = true;
        }
    }
}

}  // namespace zelmo
