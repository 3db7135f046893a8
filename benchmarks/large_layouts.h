#pragma once

#include <cstdint>

#include "examples/gds_writer.h"

// Large layouts of every kind, made for what is measured.

namespace zelmo {

/// Blocks of polygons, paths and references, and arrays, under a cell "CHIP" of 4 mm by 4 mm.
GdsWriter MixedLayout();

/// One cell of rectangles, as tools write them that flatten a layout.
GdsWriter FlatLayout();

/// Outlines of 2000 points.
GdsWriter OutlineLayout();

/// A million references to a thousand cells, in no order, half of them turned.
GdsWriter ReferenceLayout();

/// One cell of paths of so many points in all directions, every other one with extended ends.
template <std::int32_t pointCount>
GdsWriter PathLayout();

/// 600,000 cells of one to three rectangles and a reference.
GdsWriter SmallCellLayout();

}  // namespace zelmo
