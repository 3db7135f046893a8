#pragma once

#include <cstdint>
#include <span>

#include "model/grid/grid.h"
#include "model/mask/mask_layer.h"
#include "model/mask/mask_polygon.h"

// The kernels of the photo step, cell by cell. Slow and plain; those of the model must give the
// same results to the bit.

namespace zelmo {

bool PointInPolygonPlain(const MaskPolygon& polygon, double x, double y);

double RasteriseMaskPlain(const Grid& grid, std::span<const MaskPolygon> polygons,
                          std::span<std::uint8_t> rawMask, std::span<const MaskLayer> mask,
                          bool maskDark);

void BlurMaskPlain(const Grid& grid, std::span<std::uint8_t> mask,
                   std::span<const std::uint8_t> rawMask, float radius);

void MaskEdgeDistancePlain(const Grid& grid, std::span<float> edgeDistance,
                           std::span<const std::uint8_t> mask);

}  // namespace zelmo
