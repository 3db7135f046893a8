#pragma once

#include <cstdint>
#include <limits>
#include <span>

#include "render/visible/hiding_rules.h"
#include "render/visible/visible_lanes.h"

namespace zelmo {

struct ChosenTriangles;
struct PictureView;
struct Shadow;
struct Sight;

/// What squares are chosen by.
struct Choice {
    const Sight& sight;
    std::span<const Shadow> shadows;
    const PictureView& view;
    const HidingRules& rules;
};

constexpr HeightRange noHeights{std::numeric_limits<float>::max(),
                                std::numeric_limits<float>::lowest(), 0.0f};

/// Writes the bytes of some rows of squares of all layers. Returns the range of the heights there.
/// May be called for several ranges of rows at once.
HeightRange ChooseRows(const Choice& choice, std::int32_t firstRow, std::int32_t endRow,
                       ChosenTriangles& chosen);

}  // namespace zelmo
