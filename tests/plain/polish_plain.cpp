#include "tests/plain/polish_plain.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "model/grid/grid.h"
#include "model/process.h"
#include "model/stack.h"
#include "tests/plain/cover_map_plain.h"

namespace zelmo {

namespace {

bool IsStop(const Stack& stack, std::size_t id, const ProcessStep& step) {
    const Layer* layer = stack.layers[id].get();
    return id != 0 && layer != nullptr && !layer->isPhotoresist &&
           std::count(step.targets.begin(), step.targets.end(), layer->material) != 0;
}

/// The highest upper surface of the stop's layers at a cell.
std::optional<float> StopHeight(const Stack& stack, const Grid& grid, const ProcessStep& step,
                                std::int32_t col, std::int32_t row) {
    const std::size_t cell = static_cast<std::size_t>(row * grid.columns + col);
    std::optional<float> height;
    for (std::size_t id = 0; id < stack.layers.size(); ++id) {
        if (!IsStop(stack, id, step)) {
            continue;
        }
        const float top = stack.layers[id]->top[cell];
        const float bottom = stack.layers[id]->bottom[cell];
        if (std::isnan(top) || std::isnan(bottom) || top == bottom ||
            top == -std::numeric_limits<float>::infinity()) {
            continue;
        }
        height = height ? std::max(*height, top) : top;
    }
    return height;
}

/// The lowest stop height of a square of 3 by 3 cells, if it has one everywhere.
std::optional<float> SquareLevel(const Stack& stack, const Grid& grid, const ProcessStep& step,
                                 std::int32_t col, std::int32_t row) {
    std::optional<float> level;
    for (std::int32_t y = row; y < row + 3; ++y) {
        for (std::int32_t x = col; x < col + 3; ++x) {
            const std::optional<float> height = StopHeight(stack, grid, step, x, y);
            if (!height) {
                return std::nullopt;
            }
            level = level ? std::min(*level, *height) : *height;
        }
    }
    return level;
}

std::optional<float> StopLevel(const Stack& stack, const Grid& grid, const ProcessStep& step) {
    std::optional<float> highest;
    for (std::int32_t row = 0; row + 3 <= grid.rows; ++row) {
        for (std::int32_t col = 0; col + 3 <= grid.columns; ++col) {
            const std::optional<float> level = SquareLevel(stack, grid, step, col, row);
            if (level) {
                highest = highest ? std::max(*highest, *level) : *level;
            }
        }
    }
    return highest;
}

/// Returns whether any height was above the plane.
bool Lower(std::span<float> heights, float plane) {
    bool any = false;
    for (float& height : heights) {
        if (height > plane) {
            height = plane;
            any = true;
        }
    }
    return any;
}

}  // namespace

bool ExecutePolishPlain(Stack& stack, const Grid& grid, const ProcessStep& step) {
    const std::optional<float> base = step.polishesToStop ? StopLevel(stack, grid, step)
                                                          : std::optional(stack.substrateThickness);
    if (!base) {
        return false;
    }
    float plane = *base + step.level;
    if (!(plane > stack.substrateThickness)) {
        plane = stack.substrateThickness;
    }
    for (std::size_t id = 1; id < stack.layers.size(); ++id) {
        Layer* layer = stack.layers[id].get();
        if (layer == nullptr) {
            continue;
        }
        const bool topChanged = Lower(layer->top, plane);
        const bool bottomChanged = Lower(layer->bottom, plane);
        if (topChanged || bottomChanged) {
            MarkChanged(*layer);
        }
    }
    UpdateCoverMapPlain(stack, grid);
    return true;
}

}  // namespace zelmo
