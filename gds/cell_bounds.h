#pragma once

#include "gds/placement.h"

namespace zelmo {

class LogConsole;
struct GdsDatabase;

/// Gives a boundary its box.
void MeasureBoundary(GdsBoundary& boundary);

/// Gives those boundaries their boxes that have none yet, and warns of all without width or height.
/// Throws std::out_of_range if a boundary has no points.
void ComputeBoundaryBounds(GdsDatabase& database, LogConsole* console);

/// The box of a cell and all that it refers to, under a placement. At the first visit the box is
/// stored in the cell with the placement undone, and every later visit places the stored box: turns
/// and truncations can make that wider than a direct measurement. A cell's box contains its origin.
/// References are bound and lead in no circle, however deep they are. Throws std::out_of_range if
/// an array has no points.
GdsRect ComputeCellBounds(GdsCell& cell, const GdsTransform& transform);

}  // namespace zelmo
