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

ExtractionWindow WindowOf(const Grid& grid, double micronsPerUnit) {
    const auto toUnits = [&](float microns) {
        return TruncateToI64(static_cast<double>(microns) / micronsPerUnit);
    };
    return {toUnits(grid.originX), toUnits(grid.originY), toUnits(grid.originX + grid.width),
            toUnits(grid.originY + grid.height), toUnits(grid.spacing)};
}

/// The polygon in micrometres, with the values of single precision.
MaskPolygon ToMicrons(const RawPolygon& raw, float micronsPerUnit) {
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

MaskExtraction ExtractMaskPolygons(const GdsDatabase& database, const std::string& cellName,
                                   const Grid& grid, LogConsole* console) {
    console->Write(L"");
    console->Write(L"Extracting polygons");
    PolygonExtraction raw =
        ExtractPolygons(database, cellName, WindowOf(grid, database.micronsPerUnit));
    MaskExtraction masks;
    if (raw.refusal) {
        masks.failure = ExtractionFailureLine(*raw.refusal, cellName);
        console->Write(masks.failure);
        return masks;
    }
    const auto micronsPerUnit = static_cast<float>(database.micronsPerUnit);
    double smallest = std::numeric_limits<double>::max();
    masks.polygons.reserve(raw.polygons.size());
    for (RawPolygon& polygon : raw.polygons) {
        masks.polygons.push_back(ToMicrons(polygon, micronsPerUnit));
        smallest = std::min(smallest, SmallerSide(masks.polygons.back()));
        polygon.points = {};  // points by the million stand in memory once
    }
    console->Write(fmt::format("Extracted {} polygons with smallest size {:.3g} um",
                               masks.polygons.size(), smallest));
    if (raw.skipped != 0) {
        console->Write(
            fmt::format("WARNING: skipped {} polygons smaller than the resolution of {:.3g} um",
                        raw.skipped, grid.spacing));
    }
    return masks;
}

}  // namespace zelmo
