#pragma once

#include <string_view>

// Where in the layout a cell of the grid lies, and where on the grid a place of the layout. All in
// double precision, from the grid's corner and spacing as they are.
//
// Cell (col, row) stands for one point: (originX + col * spacing, originY + row * spacing), to
// within a unit of the layout, to which the masks are moved. Between the points of three
// neighbouring cells a surface is the flat triangle that is drawn there (results/drawn_point.h).
// The window's edges lie at (windowX, windowY) and beyond, in general between two columns or rows.
// A picture begins with the last column and row at or before these edges, and draws that column at
// its left edge: so it shows everything by less than one cell too far to the right and to the back.

namespace zelmo {

struct Grid;
struct ProcessSettings;

/// A point of the layout in its own coordinates, in micrometres.
struct Place {
    double x = 0.0;
    double y = 0.0;

    bool operator==(const Place&) const = default;
};

/// A point of the grid, counted in cells from its corner: whole numbers are cells.
struct GridPosition {
    double col = 0.0;
    double row = 0.0;

    bool operator==(const GridPosition&) const = default;
};

/// Where a place lies on the grid. Where a window is as flat as a few cells, or so far from the
/// layout's origin that single precision does not hold its margins, its edges may lie beyond the
/// grid; the nearest point of the grid is taken then.
GridPosition PositionOnGrid(const Grid& grid, const Place& place);

/// Where a point of the grid lies in the layout.
Place PlaceOnLayout(const Grid& grid, const GridPosition& position);

/// The location window in coordinates of the layout, in micrometres.
struct WindowBox {
    Place lowerLeft;
    Place upperRight;
};
WindowBox LocationWindow(const ProcessSettings& settings);

/// Whether a place lies in the location window or on its edge. What single precision cannot tell
/// from the edge, in which the window is held, is on it.
bool LiesInWindow(const ProcessSettings& settings, const Place& place);

/// The unit of the process file's lengths in the layout, "um" or "nm", and a place that is given in
/// it, in micrometres, and back.
std::string_view LayoutUnitName(const ProcessSettings& settings);
Place FromLayoutUnit(const ProcessSettings& settings, const Place& given);
Place InLayoutUnit(const ProcessSettings& settings, const Place& place);

}  // namespace zelmo
