#include "model/cover_map.h"

#include <array>
#include <cstddef>
#include <cstdint>

#include "model/process_model.h"

namespace zelmo {

namespace {

struct CellOffset {
    std::int32_t dx;
    std::int32_t dy;
};

/// The cell itself, then the ring around it.
constexpr std::array<CellOffset, 9> cellAndRing{{
    {0, 0},
    {0, 1},
    {-1, 1},
    {-1, 0},
    {-1, -1},
    {0, -1},
    {1, -1},
    {1, 0},
    {1, 1},
}};

/// Whether the layer has thickness at the cell or next to it. A NaN counts as thickness.
bool CoversCell(const Layer& layer, std::int32_t col, std::int32_t row, std::int32_t cols,
                std::int32_t rows) {
    for (const CellOffset& offset : cellAndRing) {
        const std::int32_t x = col + offset.dx;
        const std::int32_t y = row + offset.dy;
        if (x < 0 || x >= cols || y < 0 || y >= rows) {
            continue;
        }
        const std::size_t cell = static_cast<std::size_t>(y) * static_cast<std::size_t>(cols) +
                                 static_cast<std::size_t>(x);
        if (layer.top[cell] - layer.bottom[cell] != 0.0f) {
            return true;
        }
    }
    return false;
}

}  // namespace

void UpdateCoverMap(ProcessModel& model) {
    const std::int32_t cols = model.gridColumns;
    const std::int32_t rows = model.gridRows;
    std::size_t cell = 0;
    for (std::int32_t row = 0; row < rows; ++row) {
        for (std::int32_t col = 0; col < cols; ++col, ++cell) {
            for (std::size_t id = model.layers.size(); id-- > 0;) {
                const Layer* layer = model.layers[id].get();
                if (layer != nullptr && CoversCell(*layer, col, row, cols, rows)) {
                    model.coverMap[cell] = {static_cast<std::int32_t>(id), layer->top[cell]};
                    break;
                }
            }
        }
    }
}

}  // namespace zelmo
