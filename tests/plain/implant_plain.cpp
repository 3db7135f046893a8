#include "tests/plain/implant_plain.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <utility>
#include <vector>

#include "model/grid/grid.h"
#include "model/process.h"
#include "model/stack.h"
#include "tests/plain/cover_map_plain.h"

namespace zelmo {

namespace {

/// What an implant finds in one column.
struct Column {
    std::vector<std::size_t> converted;  ///< slots, the exposed one first
    std::optional<std::size_t>
        shielded;  ///< slot of the uppermost target, where nothing is exposed
};

class PlainImplant {
public:
    PlainImplant(Stack& stack, const Grid& grid, const ProcessStep& step)
        : stack_(stack), grid_(grid), step_(step) {}

    Column Look(std::size_t cell) const {
        Column column;
        const std::vector<std::size_t> thick = ThickLayers(cell);
        if (thick.empty()) {
            return column;
        }
        if (!IsTarget(thick[0], cell)) {
            const auto target = std::find_if(thick.begin(), thick.end(),
                                             [&](std::size_t id) { return IsTarget(id, cell); });
            if (target != thick.end()) {
                column.shielded = *target;
            }
            return column;
        }
        const float end = LayerAt(thick[0]).top[cell] - step_.depth;
        column.converted = {thick[0]};
        for (std::size_t i = 1; i < thick.size(); ++i) {
            const float above = LayerAt(thick[i - 1]).bottom[cell];
            const bool reaches = above > end;
            const bool touches = LayerAt(thick[i]).top[cell] >= above;
            if (!IsTarget(thick[i], cell) || !reaches || !touches) {
                break;
            }
            column.converted.push_back(thick[i]);
        }
        return column;
    }

    /// Where the edge of the new layer lies in a column that is not converted.
    float Edge(const std::vector<Column>& columns, std::int32_t col, std::int32_t row) const {
        const std::size_t cell = CellIndex(col, row);
        if (columns[cell].shielded) {
            return LayerAt(*columns[cell].shielded).top[cell];
        }
        std::size_t beside = 0;
        for (std::int32_t y = std::max(row - 1, 0); y <= std::min(row + 1, grid_.rows - 1); ++y) {
            for (std::int32_t x = std::max(col - 1, 0); x <= std::min(col + 1, grid_.columns - 1);
                 ++x) {
                const Column& near = columns[CellIndex(x, y)];
                beside = std::max(beside, near.converted.empty() ? 0 : near.converted[0]);
            }
        }
        if (beside != 0 && std::isfinite(LayerAt(beside).top[cell])) {
            return LayerAt(beside).top[cell];
        }
        const float cover = stack_.coverMap[cell].height;
        return std::isfinite(cover) ? cover : stack_.substrateThickness;
    }

    void Convert(Layer& layer, const Column& column, std::size_t cell) {
        const float end = LayerAt(column.converted.front()).top[cell] - step_.depth;
        layer.top[cell] = LayerAt(column.converted.front()).top[cell];
        const float bottom = LayerAt(column.converted.back()).bottom[cell];
        layer.bottom[cell] = end > bottom ? end : bottom;
        for (const std::size_t id : column.converted) {
            Layer& converted = *stack_.layers[id];
            if (end > converted.bottom[cell]) {
                converted.top[cell] = end;
            } else {
                converted.top[cell] = converted.bottom[cell];
            }
        }
    }

    std::size_t CellIndex(std::int32_t col, std::int32_t row) const {
        return static_cast<std::size_t>(row * grid_.columns + col);
    }

private:
    const Layer& LayerAt(std::size_t id) const { return *stack_.layers[id]; }

    /// Slots of the layers on the substrate with thickness at a cell, topmost first.
    std::vector<std::size_t> ThickLayers(std::size_t cell) const {
        std::vector<std::size_t> thick;
        for (std::size_t id = stack_.layers.size() - 1; id > 0; --id) {
            const Layer* layer = stack_.layers[id].get();
            if (layer != nullptr && layer->top[cell] != layer->bottom[cell]) {
                thick.push_back(id);
            }
        }
        return thick;
    }

    bool IsTarget(std::size_t id, std::size_t cell) const {
        const Layer& layer = LayerAt(id);
        return !layer.isPhotoresist && std::isfinite(layer.top[cell]) &&
               layer.top[cell] > layer.bottom[cell] &&
               std::count(step_.targets.begin(), step_.targets.end(), layer.material) != 0;
    }

    Stack& stack_;
    const Grid& grid_;
    const ProcessStep& step_;
};

}  // namespace

void ExecuteImplantPlain(Stack& stack, const Grid& grid, const ProcessStep& step) {
    PlainImplant implant(stack, grid, step);
    std::vector<Column> columns(grid.CellCount());
    for (std::size_t cell = 0; cell < columns.size(); ++cell) {
        columns[cell] = implant.Look(cell);
    }
    auto layer = CreateLayer(grid, step);
    layer->coversAround = false;
    for (std::int32_t row = 0; row < grid.rows; ++row) {
        for (std::int32_t col = 0; col < grid.columns; ++col) {
            const std::size_t cell = implant.CellIndex(col, row);
            if (columns[cell].converted.empty()) {
                layer->top[cell] = layer->bottom[cell] = implant.Edge(columns, col, row);
            }
        }
    }
    std::set<std::size_t> changed;
    for (std::size_t cell = 0; cell < columns.size(); ++cell) {
        if (!columns[cell].converted.empty()) {
            implant.Convert(*layer, columns[cell], cell);
            changed.insert(columns[cell].converted.begin(), columns[cell].converted.end());
        }
    }
    for (const std::size_t id : changed) {
        MarkChanged(*stack.layers[id]);
    }
    AppendLayer(stack, std::move(layer));
    UpdateCoverMapPlain(stack, grid);
}

}  // namespace zelmo
