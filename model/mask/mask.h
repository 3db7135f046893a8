#pragma once

#include <cstdint>
#include <span>

#include "model/mask/mask_layer.h"
#include "model/mask/mask_polygon.h"

// From the polygons of a mask to the pattern of the resist. Arrays hold one value per cell of the
// grid, row-major; a mask is 1 where resist remains, 0 elsewhere.

namespace zelmo {

struct Grid;

/// Whether a polygon lies on one of the layers.
bool BelongsTo(std::span<const MaskLayer> mask, const MaskPolygon& polygon);

/// Draws the polygons of all layers of `mask` into `rawMask`: with `maskDark` resist remains inside
/// them, otherwise outside. Returns the smallest width or height of their boxes in micrometres,
/// the largest float without any polygon.
double RasteriseMask(const Grid& grid, std::span<const MaskPolygon> polygons,
                     std::span<std::uint8_t> rawMask, std::span<const MaskLayer> mask,
                     bool maskDark);

/// Even-odd test. A point on a left or lower edge lies inside, on a right or upper edge outside.
/// Throws std::out_of_range for a polygon without points.
bool PointInPolygon(const MaskPolygon& polygon, double x, double y);

/// Sets `mask` where more than half of the cells within `radius` micrometres are set in `rawMask`.
void BlurMask(const Grid& grid, std::span<std::uint8_t> mask, std::span<const std::uint8_t> rawMask,
              float radius);

/// The distance in micrometres from each cell of the mask to the nearest cell outside it; 0 outside
/// the mask, the largest float everywhere if the mask covers the grid. Each search starts from the
/// distance found at the previous cell, and single precision makes it miss the nearest cell now and
/// then: a few cells get a slightly larger distance. The time grows with the number of cells,
/// whatever the mask is like; four bytes of work memory a cell.
void MaskEdgeDistance(const Grid& grid, std::span<float> edgeDistance,
                      std::span<const std::uint8_t> mask);

}  // namespace zelmo
