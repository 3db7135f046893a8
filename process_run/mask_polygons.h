#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "gds/polygon_extraction.h"
#include "model/mask/mask_polygon.h"

namespace zelmo {

class LogConsole;
struct GdsDatabase;
struct Grid;

/// The polygons of all masks.
struct MaskExtraction {
    std::vector<MaskPolygon> polygons;
    std::uint64_t skipped = 0;  ///< that are too small
    std::string failure;  ///< why there are none, as the console tells; empty if all went well
};

/// Why there are no polygons of a cell, as the console tells.
std::string ExtractionFailureLine(ExtractionRefusal refusal, const std::string& cellName);

/// The polygons of a cell and of all below it that meet the grid and are no smaller than its pitch,
/// depth first, in micrometres from the grid's corner; with those outside of it that come as near
/// as `reach` micrometres. Reports on the console. Throws std::out_of_range("invalid vector
/// subscript") if an array has no points.
MaskExtraction ExtractMaskPolygons(const GdsDatabase& database, const std::string& cellName,
                                   const Grid& grid, LogConsole* console, float reach = 0.0f);

/// What is extracted for a grid, in units of the layout.
ExtractionWindow MaskWindow(const Grid& grid, float reach, double micronsPerUnit);

}  // namespace zelmo
