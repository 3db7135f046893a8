#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <optional>
#include <span>

namespace zelmo {

/// A GDS layer that a mask is drawn on.
struct MaskLayer {
    std::uint32_t layer = 0;
    std::optional<std::uint32_t> datatype;  ///< none: polygons of any

    bool operator==(const MaskLayer&) const = default;
};

/// Whether what is drawn on a layer with a datatype is part of a mask.
inline bool IsPartOf(std::span<const MaskLayer> mask, std::uint32_t layer, std::uint32_t datatype) {
    return std::any_of(mask.begin(), mask.end(), [&](const MaskLayer& drawn) {
        return layer == drawn.layer && (!drawn.datatype || datatype == *drawn.datatype);
    });
}

/// How a mask differs from its layers as they are drawn, in micrometres.
struct MaskAdjustment {
    float bias = 0.0f;  ///< by which polygons grow on every side; negative: shrink
    float shiftX = 0.0f;
    float shiftY = 0.0f;

    bool operator==(const MaskAdjustment&) const = default;
};

/// How far the corner of a grown polygon can lie from where it was, as a multiple of the bias.
/// Sharper corners are cut off.
constexpr float mitreLimit = 3.0f;

/// How far in x or y a polygon can reach from where it is drawn, in micrometres.
inline float ReachOf(const MaskAdjustment& adjustment) {
    return std::max(std::abs(adjustment.shiftX), std::abs(adjustment.shiftY)) +
           mitreLimit * std::abs(adjustment.bias);
}

}  // namespace zelmo
