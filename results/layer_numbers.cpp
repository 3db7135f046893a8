#include "results/layer_numbers.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "model/grid/grid.h"
#include "model/grid/places.h"
#include "model/process.h"
#include "model/stack.h"
#include "results/layer_facts.h"

namespace zelmo {

namespace {

/// The shares along one direction, for a window from `low` to `high`, in cells from the grid's
/// first.
std::vector<double> SharesBetween(double low, double high, std::int32_t count) {
    std::vector<double> shares;
    for (std::int32_t i = 0; i < count; ++i) {
        const double first = std::max(low, i - 0.5);
        const double last = std::min(high, i + 0.5);
        shares.push_back(std::max(last - first, 0.0));
    }
    return shares;
}

/// What rows add up to.
struct Sums {
    double area = 0.0;    ///< cells
    double volume = 0.0;  ///< cells times micrometres
};

/// The extremes of a layer, in micrometres.
struct Extremes {
    bool isAnywhere = false;
    double leastThickness = 0.0;
    double greatestThickness = 0.0;
    float lowest = 0.0f;
    float highest = 0.0f;

    void Take(double thickness, float bottom, float top) {
        leastThickness = isAnywhere ? std::min(leastThickness, thickness) : thickness;
        greatestThickness = isAnywhere ? std::max(greatestThickness, thickness) : thickness;
        lowest = isAnywhere ? std::min(lowest, bottom) : bottom;
        highest = isAnywhere ? std::max(highest, top) : top;
        isAnywhere = true;
    }
};

/// Adds up a row of a layer by the shares of its columns.
Sums SumRow(const float* tops, const float* bottoms, const std::vector<double>& shares,
            Extremes& extremes) {
    Sums sums;
    for (std::size_t col = 0; col < shares.size(); ++col) {
        if (shares[col] > 0.0 && !(tops[col] - bottoms[col] == 0.0f)) {
            const double thickness =
                static_cast<double>(tops[col]) - static_cast<double>(bottoms[col]);
            sums.area += shares[col];
            sums.volume += shares[col] * thickness;
            extremes.Take(thickness, bottoms[col], tops[col]);
        }
    }
    return sums;
}

}  // namespace

WindowShares FindWindowShares(const Grid& grid, const ProcessSettings& settings) {
    const auto [low, high] = LocationWindow(settings);
    const double spacing = grid.spacing;
    const double x = grid.originX;
    const double y = grid.originY;
    return {SharesBetween((low.x - x) / spacing, (high.x - x) / spacing, grid.columns),
            SharesBetween((low.y - y) / spacing, (high.y - y) / spacing, grid.rows)};
}

LayerNumbers MeasureLayer(const Layer& layer, const WindowShares& shares, const Stack& stack) {
    Sums sums;
    Extremes extremes;
    for (std::size_t row = 0; row < shares.rows.size(); ++row) {
        if (shares.rows[row] > 0.0) {
            const std::size_t start = row * shares.cols.size();
            const Sums ofRow = SumRow(layer.top.data() + start, layer.bottom.data() + start,
                                      shares.cols, extremes);
            sums.area += shares.rows[row] * ofRow.area;
            sums.volume += shares.rows[row] * ofRow.volume;
        }
    }
    if (!extremes.isAnywhere) {
        return {};
    }
    const double spacing = layer.spacing;
    const double cell = spacing * spacing;
    constexpr double nanometres = 1000.0;
    return {sums.area * cell, sums.volume * cell,
            LayerNumbers::Heights{extremes.leastThickness * nanometres,
                                  extremes.greatestThickness * nanometres,
                                  sums.volume / sums.area * nanometres,
                                  NanometresAboveSubstrate(extremes.lowest, stack),
                                  NanometresAboveSubstrate(extremes.highest, stack)}};
}

}  // namespace zelmo
