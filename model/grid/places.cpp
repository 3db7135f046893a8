#include "model/grid/places.h"

#include <algorithm>
#include <cmath>

#include "model/grid/grid.h"
#include "model/process.h"

namespace zelmo {

namespace {

constexpr double nanometresPerMicrometre = 1000.0;

/// The cells from the grid's edge to a coordinate, on a grid of `count` cells.
double CellsTo(double coordinate, double origin, double spacing, double count) {
    return std::clamp((coordinate - origin) / spacing, 0.0, std::max(count - 1.0, 0.0));
}

/// Whether a coordinate lies between two edges, but for a few times the distance of neighbouring
/// numbers in single precision.
bool LiesBetween(double coordinate, double low, double high) {
    const double doubt = 0x1p-22 * std::max(std::abs(low), std::abs(high));
    return coordinate >= low - doubt && coordinate <= high + doubt;
}

}  // namespace

GridPosition PositionOnGrid(const Grid& grid, const Place& place) {
    const double spacing = grid.spacing;
    return {CellsTo(place.x, grid.originX, spacing, grid.columns),
            CellsTo(place.y, grid.originY, spacing, grid.rows)};
}

Place PlaceOnLayout(const Grid& grid, const GridPosition& position) {
    const double spacing = grid.spacing;
    return {static_cast<double>(grid.originX) + position.col * spacing,
            static_cast<double>(grid.originY) + position.row * spacing};
}

WindowBox LocationWindow(const ProcessSettings& settings) {
    const double x = settings.windowX;
    const double y = settings.windowY;
    return {{x, y},
            {x + static_cast<double>(settings.windowWidth),
             y + static_cast<double>(settings.windowHeight)}};
}

bool LiesInWindow(const ProcessSettings& settings, const Place& place) {
    const auto [low, high] = LocationWindow(settings);
    return LiesBetween(place.x, low.x, high.x) && LiesBetween(place.y, low.y, high.y);
}

std::string_view LayoutUnitName(const ProcessSettings& settings) {
    return settings.lengthsInNanometres ? "nm" : "um";
}

Place FromLayoutUnit(const ProcessSettings& settings, const Place& given) {
    const double divisor = settings.lengthsInNanometres ? nanometresPerMicrometre : 1.0;
    return {given.x / divisor, given.y / divisor};
}

Place InLayoutUnit(const ProcessSettings& settings, const Place& place) {
    const double factor = settings.lengthsInNanometres ? nanometresPerMicrometre : 1.0;
    return {place.x * factor, place.y * factor};
}

}  // namespace zelmo
