#include "results/stack_column.h"

#include <algorithm>

#include "model/grid/places.h"
#include "model/process_model.h"
#include "results/drawn_point.h"

namespace zelmo {

std::vector<ColumnPart> ReadStackColumn(const ProcessModel& model, const GridPosition& position) {
    const Stack& stack = model.stack;
    const DrawnPoint point(model.grid, position);
    std::vector<ColumnPart> column;  // from the bottom up
    for (std::size_t slot = 0; slot < stack.layers.size(); ++slot) {
        if (stack.layers[slot] == nullptr) {
            continue;
        }
        const Layer& layer = *stack.layers[slot];
        const double from = NanometresAboveSubstrate(point.HeightOf(layer.bottom), stack);
        const double to = NanometresAboveSubstrate(point.HeightOf(layer.top), stack);
        if (to - from <= noThickness) {
            continue;
        }
        if (!column.empty() && from - column.back().to > noThickness) {
            column.push_back({std::nullopt, column.back().to, from});
        }
        column.push_back({FactsOf(stack, slot), from, to});
    }
    std::reverse(column.begin(), column.end());
    return column;
}

}  // namespace zelmo
