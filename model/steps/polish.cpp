#include <algorithm>
#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "base/debug_trace.h"
#include "base/row_bands.h"
#include "model/cover_map.h"
#include "model/grid/grid.h"
#include "model/process.h"
#include "model/stack.h"
#include "model/steps/polish_lanes.h"
#include "model/steps/steps.h"
#include "model/steps/typed_layers.h"

// The level of the stop is looked for tile by tile, with the stop heights of three rows at hand: no
// array of the grid's size is needed, and a stop layer is read once. Then the layers are told
// apart. One that reaches nowhere above the plane is not written. One that is nowhere below it has
// nothing left: it leaves the stack at once, as it would when the step ends, and is not written
// either.

namespace zelmo {

namespace {

constexpr float noStop = -std::numeric_limits<float>::infinity();
constexpr std::int32_t smallestBand = 64;
constexpr std::int32_t tileSquares = 1024;

using StopRow = std::array<float, tileSquares + 2 + spareStops>;

/// Looks for the level of a stop in part of the grid.
class StopTile {
public:
    StopTile(const Grid& grid, std::span<const Layer* const> stops, std::int32_t firstCol)
        : stops_(stops),
          gridColumns_(grid.columns),
          firstCol_(firstCol),
          squares_(std::min(tileSquares, grid.columns - 2 - firstCol)) {}

    /// The highest level over squares whose front rows are these.
    float LevelOf(std::int32_t firstRow, std::int32_t endRow) {
        FindStop(firstRow, front_);
        FindStop(firstRow + 1, middle_);
        float level = noStop;
        for (std::int32_t row = firstRow; row < endRow; ++row) {
            FindStop(row + 2, back_);
            level = std::max(level, ZELMO_PICK_LANES(HighestSquare)(front_->data(), middle_->data(),
                                                                    back_->data(), squares_));
            std::swap(front_, middle_);
            std::swap(middle_, back_);
        }
        return level;
    }

private:
    /// The highest upper surface of the stop layers at each cell of the tile in a row.
    void FindStop(std::int32_t row, StopRow* heights) const {
        heights->fill(noStop);
        const std::size_t first =
            static_cast<std::size_t>(row) * static_cast<std::size_t>(gridColumns_) +
            static_cast<std::size_t>(firstCol_);
        for (const Layer* const stop : stops_) {
            ZELMO_PICK_LANES(RaiseStop)
            (&stop->top[first], &stop->bottom[first], heights->data(), squares_ + 2);
        }
    }

    std::span<const Layer* const> stops_;
    std::int32_t gridColumns_;
    std::int32_t firstCol_;
    std::int32_t squares_;  ///< in a row
    std::array<StopRow, 3> rows_{};
    StopRow* front_ = &rows_[0];
    StopRow* middle_ = &rows_[1];
    StopRow* back_ = &rows_[2];
};

/// The highest level that the stop layers keep over a whole square of 3 by 3 cells, if there is
/// one.
std::optional<float> FindStopLevel(const Grid& grid, std::span<const Layer* const> stops) {
    std::atomic<float> highest = noStop;
    ForRowBands(grid.rows - 2, smallestBand, [&](std::int32_t firstRow, std::int32_t endRow) {
        for (std::int32_t col = 0; col < grid.columns - 2; col += tileSquares) {
            const float level = StopTile(grid, stops, col).LevelOf(firstRow, endRow);
            float known = highest;
            while (level > known && !highest.compare_exchange_weak(known, level)) {
            }
        }
    });
    const float level = highest;
    return level > noStop ? std::optional(level) : std::nullopt;
}

std::vector<const Layer*> FindStopLayers(const Stack& stack, const ProcessStep& step) {
    const std::vector<bool> isStop = FindTypedLayers(stack, step.targets);
    std::vector<const Layer*> stops;
    for (std::size_t id = 0; id < isStop.size(); ++id) {
        if (isStop[id]) {
            stops.push_back(stack.layers[id].get());
        }
    }
    return stops;
}

/// The height of the plane, if there is one.
std::optional<float> FindPlane(const Stack& stack, const Grid& grid, const ProcessStep& step) {
    const float ground = stack.substrateThickness;
    std::optional<float> base = ground;
    if (step.polishesToStop) {
        base = FindStopLevel(grid, FindStopLayers(stack, step));
    }
    if (!base) {
        return std::nullopt;
    }
    const float plane = *base + step.level;
    return plane > ground ? plane : ground;
}

/// The cells of some rows of a surface: where they begin, and how many they are.
struct RowCells {
    RowCells(const Grid& grid, std::int32_t firstRow, std::int32_t endRow)
        : first(static_cast<std::size_t>(firstRow) * static_cast<std::size_t>(grid.columns)),
          count((endRow - firstRow) * grid.columns) {}

    std::size_t first;
    std::int32_t count;
};

bool ReachesAbove(const Layer& layer, const RowCells& cells, float plane) {
    const auto anyAbove = ZELMO_PICK_LANES(AnyAbove);
    return anyAbove(&layer.top[cells.first], cells.count, plane) ||
           anyAbove(&layer.bottom[cells.first], cells.count, plane);
}

bool ReachesBelow(const Layer& layer, const RowCells& cells, float plane) {
    const auto noneBelow = ZELMO_PICK_LANES(NoneBelow);
    return !noneBelow(&layer.bottom[cells.first], cells.count, plane) ||
           !noneBelow(&layer.top[cells.first], cells.count, plane);
}

/// How a layer lies to the plane. In doubt, where a height is no number, it reaches below as well.
struct LayerPlace {
    std::atomic<bool> above = false;
    std::atomic<bool> below = false;
};

/// One for each slot; the substrate is never above.
std::vector<LayerPlace> FindPlaces(const Stack& stack, const Grid& grid, float plane) {
    std::vector<LayerPlace> places(stack.layers.size());
    ForRowBands(grid.rows, smallestBand, [&](std::int32_t firstRow, std::int32_t endRow) {
        const RowCells cells(grid, firstRow, endRow);
        for (std::size_t id = 1; id < places.size(); ++id) {
            const Layer* const layer = stack.layers[id].get();
            LayerPlace& place = places[id];
            if (layer == nullptr) {
                continue;
            }
            if (!place.above && ReachesAbove(*layer, cells, plane)) {
                place.above = true;
            }
            if (!place.below && ReachesBelow(*layer, cells, plane)) {
                place.below = true;
            }
        }
    });
    return places;
}

void LowerLayers(std::span<Layer* const> layers, const Grid& grid, float plane) {
    ForRowBands(grid.rows, smallestBand, [&](std::int32_t firstRow, std::int32_t endRow) {
        const RowCells cells(grid, firstRow, endRow);
        for (Layer* const layer : layers) {
            const auto lower = ZELMO_PICK_LANES(LowerToPlane);
            lower(&layer->top[cells.first], cells.count, plane);
            lower(&layer->bottom[cells.first], cells.count, plane);
        }
    });
}

/// Levels the layers. Needs no memory any more when it takes the first one away.
void LevelLayers(Stack& stack, const Grid& grid, float plane) {
    const std::vector<LayerPlace> places = FindPlaces(stack, grid, plane);
    std::vector<Layer*> cut;
    for (std::size_t id = 0; id < places.size(); ++id) {
        if (places[id].above && places[id].below) {
            cut.push_back(stack.layers[id].get());
            MarkChanged(*cut.back());
        }
    }
    LowerLayers(cut, grid, plane);
    for (std::size_t id = 0; id < places.size(); ++id) {
        if (places[id].above && !places[id].below) {
            stack.layers[id].reset();
        }
    }
}

}  // namespace

bool ExecutePolish(Stack& stack, const Grid& grid, const ProcessStep& step) {
    DebugTrace("Executing polish");
    const std::optional<float> plane = FindPlane(stack, grid, step);
    if (!plane) {
        return false;
    }
    LevelLayers(stack, grid, *plane);
    UpdateCoverMap(stack, grid);
    return true;
}

}  // namespace zelmo
