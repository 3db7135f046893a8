#pragma once

#include <cstdint>

#include "gds/gds_database.h"
#include "tests/gds/layout_file.h"

// Elements for cells that are made by hand.

namespace zelmo {

inline GdsBoundary Rectangle(std::uint16_t layer, std::int64_t x0, std::int64_t y0, std::int64_t x1,
                             std::int64_t y1) {
    GdsBoundary boundary;
    boundary.layer = layer;
    boundary.points = KeepPoints({{x0, y0}, {x1, y0}, {x1, y1}, {x0, y1}, {x0, y0}});
    boundary.bounds = {x0, y0, x1, y1};
    return boundary;
}

inline GdsBoundary Rectangle(std::int64_t x0, std::int64_t y0, std::int64_t x1, std::int64_t y1) {
    return Rectangle(0, x0, y0, x1, y1);
}

inline GdsSref Reference(GdsCell& cell, GdsPoint origin, double angle = 0.0,
                         std::uint16_t strans = 0) {
    GdsSref sref;
    sref.cell = &cell;
    sref.origin = origin;
    sref.mag = 1.0;
    sref.angle = angle;
    sref.strans = strans;
    return sref;
}

inline GdsAref Array(GdsCell& cell, std::int32_t columns, std::int32_t rows, GdsPoint origin,
                     GdsPoint columnEnd, GdsPoint rowEnd) {
    GdsAref aref;
    aref.cell = &cell;
    aref.mag = 1.0;
    aref.columns = columns;
    aref.rows = rows;
    aref.points = KeepPoints({origin, columnEnd, rowEnd});
    return aref;
}

}  // namespace zelmo
