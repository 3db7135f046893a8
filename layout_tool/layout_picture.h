#pragma once

#include <cstddef>
#include <string>

#include "layout_tool/cell_facts.h"
#include "layout_tool/layout_reading.h"
#include "layout_tool/reports.h"

namespace zelmo {

/// How much a picture holds at most. Where there is more, the largest shapes are drawn.
struct PictureLimits {
    std::size_t shapes = 100000;
    std::size_t points = 1000000;
};

struct LayoutPicture {
    std::string svg;
    std::string leftOut;  ///< what is not drawn, in words; empty if all is
    std::string failure;  ///< why there is no picture, in words
};

/// A cell from above as SVG: the masks of the process in their order and in the colours of what
/// they stand for, or all layers; with axes in um, and with the window and what lies close around
/// it where there is one, otherwise the whole cell.
LayoutPicture DrawLayout(const LayoutReading& reading, const CellFacts& facts,
                         const ReportSubject& subject, const PictureLimits& limits = {});

}  // namespace zelmo
