#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "gds/polygon_extraction.h"
#include "layout_tool/cell_facts.h"
#include "layout_tool/layout_picture.h"

namespace zelmo {

/// What a picture shows of the layout, in its units.
struct PictureView {
    std::int64_t x0 = 0;
    std::int64_t y0 = 0;
    std::int64_t x1 = 0;  ///< above x0
    std::int64_t y1 = 0;  ///< above y0
};

/// Shapes that are drawn alike.
struct PictureGroup {
    std::string title;  ///< any bytes
    std::array<float, 3> color{};
    std::vector<MaskLayer> layers;
    std::vector<std::vector<GdsPoint>> shapes;  ///< from the view's corner
};

struct PictureShapes {
    std::vector<PictureGroup> groups;
    std::string leftOut;  ///< as LayoutPicture has it
    std::string failure;
};

/// What is drawn: the masks of the process, or all layers. A shape of several masks is in each.
PictureShapes CollectShapes(const LayoutReading& reading, const CellFacts& facts,
                            const ReportSubject& subject, const PictureView& view,
                            const PictureLimits& limits);

}  // namespace zelmo
