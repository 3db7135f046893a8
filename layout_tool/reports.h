#pragma once

#include <string>
#include <vector>

#include "layout_tool/cell_facts.h"
#include "layout_tool/layout_reading.h"

namespace zelmo {

/// What is looked at, as the user named it, in UTF-8.
struct ReportSubject {
    std::string layout;
    std::string process;  ///< empty: none
};

// Tables for a terminal; every line has its end.

/// Unit, cells and problems of a layout.
std::string LayoutText(const LayoutReading& reading, const ReportSubject& subject);
/// Layers, masks and texts of a cell, with the problems of the layout.
std::string CellText(const LayoutReading& reading, const CellFacts& facts,
                     const ReportSubject& subject);

// The same as JSON, with a line's end. Lengths are um, areas um2; numbers that no number of JSON
// can be are null.

std::string LayoutJson(const LayoutReading& reading, const ReportSubject& subject);
std::string CellJson(const LayoutReading& reading, const CellFacts& facts,
                     const ReportSubject& subject);

/// What is missing of a process's masks, a line of UTF-8 for each: masks on which the cell draws
/// nothing, and those of which the window has nothing.
std::vector<std::string> MissingMaskLines(const LayoutReading& reading, const CellFacts& facts);

/// "Gate (line 14), Poly2 (line 30)"
std::string UsesText(const MaskFacts& mask);

}  // namespace zelmo
