#include "tests/plain/cover_map_plain.h"

#include <cstddef>
#include <cstdint>

#include "model/grid/grid.h"
#include "model/stack.h"

namespace zelmo {

namespace {

constexpr int offsets[9][2] = {{0, 0},  {0, 1},  {-1, 1}, {-1, 0}, {-1, -1},
                               {0, -1}, {1, -1}, {1, 0},  {1, 1}};

bool FindCover(const Stack& stack, const Grid& grid, std::int32_t col, std::int32_t row,
               CoverCell& cover) {
    for (std::int32_t id = static_cast<std::int32_t>(stack.layers.size()) - 1; id >= 0; --id) {
        const Layer* layer = stack.layers[static_cast<std::size_t>(id)].get();
        if (layer == nullptr) {
            continue;
        }
        for (const auto& offset : offsets) {
            if (!layer->coversAround && (offset[0] != 0 || offset[1] != 0)) {
                continue;
            }
            const std::int32_t x = col + offset[0];
            const std::int32_t y = row + offset[1];
            if (x < 0 || y < 0 || x >= grid.columns || y >= grid.rows) {
                continue;
            }
            const std::size_t there = static_cast<std::size_t>(y * grid.columns + x);
            const float thickness = layer->top[there] - layer->bottom[there];
            if (thickness == 0.0f) {
                continue;
            }
            const std::size_t here = static_cast<std::size_t>(row * grid.columns + col);
            cover.layerId = id;
            cover.height = layer->top[here];
            return true;
        }
    }
    return false;
}

}  // namespace

void UpdateCoverMapPlain(Stack& stack, const Grid& grid) {
    if (grid.columns < 1) {
        return;
    }
    for (std::int32_t col = 0; col < grid.columns; ++col) {
        for (std::int32_t row = 0; row < grid.rows; ++row) {
            CoverCell cover;
            if (FindCover(stack, grid, col, row, cover)) {
                stack.coverMap[static_cast<std::size_t>(row * grid.columns + col)] = cover;
            }
        }
    }
}

}  // namespace zelmo
