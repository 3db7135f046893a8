#include "render/visible/visible_triangles.h"

#include <algorithm>
#include <array>
#include <mutex>
#include <utility>

#include "base/row_bands.h"
#include "render/visible/row_chooser.h"
#include "render/visible/shadows.h"
#include "render/visible/sight.h"

namespace zelmo {

namespace {

constexpr std::int32_t fewestRowsToChooseIn = 16;  // for a thread

/// Whether all of a stack with these heights is there and in view: heights without number, and a
/// stack that the view cuts off, leave holes to look through.
bool HasNoHoles(const LayerStack& stack, const HeightRange& heights, const PictureView& view) {
    const std::array<double, 3> size{static_cast<double>(stack.spacing) * (stack.cols - 1),
                                     static_cast<double>(stack.spacing) * (stack.rows - 1),
                                     static_cast<double>(heights.highest)};
    return heights.sum == 0.0f &&
           ShowsWholeBox(view.transform, size, static_cast<double>(heights.lowest));
}

/// Chooses on all cores. Returns the range of the heights.
HeightRange ChooseAllRows(const Choice& choice, ChosenTriangles& chosen) {
    std::mutex mutex;
    HeightRange heights = noHeights;
    ForRowBands(chosen.stack.rows - 1, fewestRowsToChooseIn,
                [&](std::int32_t first, std::int32_t end) {
                    const HeightRange range = ChooseRows(choice, first, end, chosen);
                    const std::lock_guard lock(mutex);
                    heights.lowest = std::min(heights.lowest, range.lowest);
                    heights.highest = std::max(heights.highest, range.highest);
                    heights.sum += range.sum;
                });
    return heights;
}

}  // namespace

std::optional<ChosenTriangles> ChooseTriangles(const Stack& stack, const Grid& grid,
                                               const PictureView& view, const HidingRules& rules) {
    std::optional<LayerStack> layers = FindStack(stack, grid);
    const std::optional<Sight> sight = layers ? FindSight(*layers, view) : std::nullopt;
    if (!sight) {
        return std::nullopt;
    }
    ChosenTriangles chosen{std::move(*layers), {}};
    for (std::size_t i = 0; i < chosen.stack.layers.size(); ++i) {
        chosen.layers.emplace_back(chosen.stack);
    }
    const auto shadows = rules.shadowed ? FindShadows(chosen.stack, *sight) : std::vector<Shadow>();
    const HeightRange heights = ChooseAllRows({*sight, shadows, view, rules}, chosen);
    if (!HasNoHoles(chosen.stack, heights, view)) {
        return std::nullopt;
    }
    return chosen;
}

}  // namespace zelmo
