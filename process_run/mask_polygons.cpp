#include "process_run/mask_polygons.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <utility>

#include "base/log_console.h"
#include "gds/coordinates.h"
#include "gds/gds_database.h"
#include "gds/polygon_extraction.h"
#include "model/grid/grid.h"

namespace zelmo {

namespace {

/// The way from the grid's corner to that of a wider window, in units of the layout.
GdsPoint WayTo(const ExtractionWindow& wide, const ExtractionWindow& ofGrid) {
    return {SaturatingSubtract(wide.x0, ofGrid.x0), SaturatingSubtract(wide.y0, ofGrid.y0)};
}

/// The polygon in micrometres, with the values of single precision. `corner` is where its points
/// are counted from.
MaskPolygon ToMicrons(const RawPolygon& raw, GdsPoint corner, float micronsPerUnit) {
    MaskPolygon polygon;
    polygon.layer = raw.layer;
    polygon.datatype = raw.datatype;
    polygon.minX = polygon.minY = std::numeric_limits<double>::max();
    // The smallest positive number, not the most negative one: a box ends no further left or down
    // than the grid begins. This shows where all points of a polygon lie beyond these edges, and
    // only its box, turned with a cell, reached over one. It draws nothing either way, but counts
    // in the report with its size up to the edge.
    polygon.maxX = polygon.maxY = std::numeric_limits<double>::min();
    polygon.points.reserve(raw.points.size());
    for (const GdsPoint point : raw.points) {
        const double x = static_cast<float>(SaturatingAdd(point.x, corner.x)) * micronsPerUnit;
        const double y = static_cast<float>(SaturatingAdd(point.y, corner.y)) * micronsPerUnit;
        polygon.points.push_back({x, y});
        polygon.minX = std::min(polygon.minX, x);
        polygon.minY = std::min(polygon.minY, y);
        polygon.maxX = std::max(polygon.maxX, x);
        polygon.maxY = std::max(polygon.maxY, y);
    }
    return polygon;
}

double SmallerSide(const MaskPolygon& polygon) {
    return std::min(polygon.maxY - polygon.minY, polygon.maxX - polygon.minX);
}

}  // namespace

std::string ExtractionFailureLine(ExtractionRefusal refusal, const std::string& cellName) {
    switch (refusal) {
        case ExtractionRefusal::UnknownCell:
            return fmt::format("ERROR: Cell name {} was not found in the GDS database",
                               NameText(cellName));
        case ExtractionRefusal::TooManyPolygons:
        case ExtractionRefusal::TooManyPoints:
            return "ERROR: Reached the maximum number of polygons";
        case ExtractionRefusal::FruitlessSearch:
            return "ERROR: The references of the cell are too many to be searched";
    }
    return {};
}

ExtractionWindow MaskWindow(const Grid& grid, float reach, double micronsPerUnit) {
    const auto toUnits = [&](float microns) {
        return TruncateToI64(static_cast<double>(microns) / micronsPerUnit);
    };
    return {toUnits(grid.originX - reach), toUnits(grid.originY - reach),
            toUnits(grid.originX + grid.width + reach), toUnits(grid.originY + grid.height + reach),
            toUnits(grid.spacing)};
}

MaskExtraction ExtractMaskPolygons(const GdsDatabase& database, const std::string& cellName,
                                   const Grid& grid, LogConsole* console, float reach) {
    console->Write(L"");
    console->Write(L"Extracting polygons");
    const ExtractionWindow window = MaskWindow(grid, reach, database.micronsPerUnit);
    PolygonExtraction raw = ExtractPolygons(database, cellName, window);
    MaskExtraction masks;
    if (raw.refusal) {
        masks.failure = ExtractionFailureLine(*raw.refusal, cellName);
        console->Write(masks.failure);
        return masks;
    }
    const auto micronsPerUnit = static_cast<float>(database.micronsPerUnit);
    double smallest = std::numeric_limits<double>::max();
    const GdsPoint corner = WayTo(window, MaskWindow(grid, 0.0f, database.micronsPerUnit));
    masks.polygons.reserve(raw.polygons.size());
    for (RawPolygon& polygon : raw.polygons) {
        masks.polygons.push_back(ToMicrons(polygon, corner, micronsPerUnit));
        smallest = std::min(smallest, SmallerSide(masks.polygons.back()));
        polygon.points = {};  // points by the million stand in memory once
    }
    console->Write(fmt::format("Extracted {} polygons with smallest size {:.3g} um",
                               masks.polygons.size(), smallest));
    masks.skipped = raw.skipped;
    if (raw.skipped != 0) {
        console->Write(
            fmt::format("WARNING: skipped {} polygons smaller than the resolution of {:.3g} um",
                        raw.skipped, grid.spacing));
    }
    return masks;
}

}  // namespace zelmo
