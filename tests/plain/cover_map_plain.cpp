#include "tests/plain/cover_map_plain.h"

#include <cstddef>
#include <cstdint>

#include "model/process_model.h"

namespace zelmo {

namespace {

constexpr int offsets[9][2] = {{0, 0},  {0, 1},  {-1, 1}, {-1, 0}, {-1, -1},
                               {0, -1}, {1, -1}, {1, 0},  {1, 1}};

bool FindCover(const ProcessModel& model, std::int32_t col, std::int32_t row, CoverCell& cover) {
    for (std::int32_t id = static_cast<std::int32_t>(model.layers.size()) - 1; id >= 0; --id) {
        const Layer* layer = model.layers[static_cast<std::size_t>(id)].get();
        if (layer == nullptr) {
            continue;
        }
        for (const auto& offset : offsets) {
            const std::int32_t x = col + offset[0];
            const std::int32_t y = row + offset[1];
            if (x < 0 || y < 0 || x >= model.gridColumns || y >= model.gridRows) {
                continue;
            }
            const std::size_t there = static_cast<std::size_t>(y * model.gridColumns + x);
            const float thickness = layer->top[there] - layer->bottom[there];
            if (thickness == 0.0f) {
                continue;
            }
            const std::size_t here = static_cast<std::size_t>(row * model.gridColumns + col);
            cover.layerId = id;
            cover.height = layer->top[here];
            return true;
        }
    }
    return false;
}

}  // namespace

void UpdateCoverMapPlain(ProcessModel& model) {
    if (model.gridColumns < 1) {
        return;
    }
    for (std::int32_t col = 0; col < model.gridColumns; ++col) {
        for (std::int32_t row = 0; row < model.gridRows; ++row) {
            CoverCell cover;
            if (FindCover(model, col, row, cover)) {
                model.coverMap[static_cast<std::size_t>(row * model.gridColumns + col)] = cover;
            }
        }
    }
}

}  // namespace zelmo
