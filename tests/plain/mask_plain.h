#pragma once

#include <cstdint>
#include <span>

#include "model/process_model.h"

// The kernels of the photo step, cell by cell. Slow and plain; those of the model must give the
// same results to the bit.

namespace zelmo {

bool PointInPolygonPlain(const MaskPolygon& polygon, double x, double y);

double RasteriseMaskPlain(const ProcessModel& model, std::span<std::uint8_t> rawMask,
                          std::uint32_t maskId, bool maskDark);

void BlurMaskPlain(const ProcessModel& model, std::span<std::uint8_t> mask,
                   std::span<const std::uint8_t> rawMask, float radius);

void MaskEdgeDistancePlain(const ProcessModel& model, std::span<float> edgeDistance,
                           std::span<const std::uint8_t> mask);

}  // namespace zelmo
