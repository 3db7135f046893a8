#include "results/notes/stack_before.h"

#include <algorithm>
#include <utility>

#include "model/process_model.h"

namespace zelmo {

namespace {

bool CanRemove(const ProcessStep& step, const Layer& layer) {
    const bool isTarget =
        std::find(step.targets.begin(), step.targets.end(), layer.material) != step.targets.end();
    return isTarget || (layer.isPhotoresist && step.kind == StepKind::Etch);
}

std::vector<CoverCell> CoverIn(const ProcessModel& model, const ShownWindow& window) {
    std::vector<CoverCell> cover;
    cover.reserve(CellsOf(window));
    for (std::int32_t row = 0; row < window.rows; ++row) {
        const CoverCell* const first = &model.stack.coverMap[window.GridIndex(0, row)];
        cover.insert(cover.end(), first, first + window.cols);
    }
    return cover;
}

}  // namespace

std::size_t CellsOf(const ShownWindow& window) {
    return static_cast<std::size_t>(window.cols) * static_cast<std::size_t>(window.rows);
}

WindowValues ThicknessOf(const Layer* layer, const ShownWindow& window) {
    WindowValues thickness(CellsOf(window), 0.0f);
    for (std::int32_t row = 0; layer != nullptr && row < window.rows; ++row) {
        const std::size_t from = window.GridIndex(0, row);
        const std::size_t to =
            static_cast<std::size_t>(row) * static_cast<std::size_t>(window.cols);
        const float* const top = &layer->top[from];
        const float* const bottom = &layer->bottom[from];
        float* const values = &thickness[to];
        for (std::int32_t col = 0; col < window.cols; ++col) {
            values[col] = top[col] - bottom[col];
        }
    }
    return thickness;
}

std::size_t CountThick(const WindowValues& thickness) {
    return static_cast<std::size_t>(std::count_if(thickness.begin(), thickness.end(),
                                                  [](float value) { return value > 0.0f; }));
}

StackBefore TakeStackBefore(const ProcessModel& model, const ProcessStep& step) {
    StackBefore before;
    if (step.kind != StepKind::Etch && step.kind != StepKind::Release) {
        return before;
    }
    const ShownWindow window = FindShownWindow(model.grid);
    const auto& layers = model.stack.layers;
    for (std::size_t slot = 0; slot < layers.size(); ++slot) {
        if (layers[slot] == nullptr || !CanRemove(step, *layers[slot])) {
            continue;
        }
        WindowValues thickness = ThicknessOf(layers[slot].get(), window);
        const std::size_t cells = CountThick(thickness);
        before.layers.push_back({slot, layers[slot]->material, layers[slot]->isPhotoresist,
                                 std::move(thickness), cells});
    }
    if (step.kind == StepKind::Etch) {
        before.cover = CoverIn(model, window);
    }
    return before;
}

}  // namespace zelmo
