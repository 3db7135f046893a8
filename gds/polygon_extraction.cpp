#include "gds/polygon_extraction.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <stdexcept>
#include <string>
#include <utility>

#include "base/log_console.h"
#include "gds/coordinates.h"
#include "gds/gds_database.h"
#include "gds/polygon_selection.h"
#include "model/process_model.h"

namespace zelmo {

namespace {

constexpr std::uint32_t limitReached = 2;

ExtractionScope ScopeOf(const ProcessModel& model, double micronsPerUnit) {
    const auto toUnits = [&](float microns) {
        return TruncateToI64(static_cast<double>(microns) / micronsPerUnit);
    };
    ExtractionScope scope;
    scope.x0 = toUnits(model.grid.originX);
    scope.y0 = toUnits(model.grid.originY);
    scope.x1 = toUnits(model.grid.originX + model.grid.width);
    scope.y1 = toUnits(model.grid.originY + model.grid.height);
    scope.minSize = toUnits(model.grid.spacing);
    return scope;
}

const GdsCell* FindCell(const GdsDatabase& database, const std::string& name) {
    const auto found =
        std::find_if(database.cells.begin(), database.cells.end(),
                     [&](const GdsCell& cell) { return NameText(cell.name) == NameText(name); });
    return found == database.cells.end() ? nullptr : &*found;
}

/// The polygon in micrometres. Values have single precision. The greatest coordinates start at the
/// smallest positive number, where polygons at negative coordinates leave them.
MaskPolygon ToMicrons(const RawPolygon& raw, float micronsPerUnit) {
    MaskPolygon polygon;
    polygon.layer = raw.layer;
    polygon.minX = polygon.minY = std::numeric_limits<double>::max();
    polygon.maxX = polygon.maxY = std::numeric_limits<double>::min();
    polygon.points.reserve(raw.points.size());
    for (const GdsPoint point : raw.points) {
        const double x = static_cast<float>(point.x) * micronsPerUnit;
        const double y = static_cast<float>(point.y) * micronsPerUnit;
        polygon.points.push_back({x, y});
        polygon.minX = std::min(polygon.minX, x);
        polygon.minY = std::min(polygon.minY, y);
        polygon.maxX = std::max(polygon.maxX, x);
        polygon.maxY = std::max(polygon.maxY, y);
    }
    return polygon;
}

}  // namespace

std::string ExtractPolygons(ProcessModel& model, LogConsole* console, const GdsDatabase& database) {
    console->Write(L"");
    console->Write(L"Extracting polygons");
    ExtractionScope scope = ScopeOf(model, database.micronsPerUnit);
    const GdsCell* cell = FindCell(database, model.settings.cellName);
    if (cell == nullptr) {
        return fmt::format("ERROR: Cell name {} was not found in the GDS database",
                           NameText(model.settings.cellName));
    }
    if (const std::uint32_t result = CollectCellPolygons(scope, {cell, GdsTransform()})) {
        return result == limitReached
                   ? "ERROR: Reached the maximum number of polygons"
                   : "ERROR: The references of the cell are too many to be searched";
    }
    model.polygons.clear();
    const auto micronsPerUnit = static_cast<float>(database.micronsPerUnit);
    double smallest = std::numeric_limits<double>::max();
    for (const RawPolygon& raw : scope.output) {
        MaskPolygon polygon = ToMicrons(raw, micronsPerUnit);
        smallest =
            std::min(smallest, std::min(polygon.maxY - polygon.minY, polygon.maxX - polygon.minX));
        model.polygons.push_back(std::move(polygon));
    }
    console->Write(fmt::format("Extracted {} polygons with smallest size {:.3g} um",
                               model.polygons.size(), smallest));
    if (scope.skipped != 0) {
        console->Write(
            fmt::format("WARNING: skipped {} polygons smaller than the resolution of {:.3g} um",
                        scope.skipped, model.grid.spacing));
    }
    return "";
}

}  // namespace zelmo
