#pragma once

#include <memory>
#include <vector>

#include "results/layer_numbers.h"
#include "results/summary.h"

namespace zelmo {

struct SurfaceVersion;

/// Measures the layers of one model after step and step: each again only when its surfaces have
/// changed.
class LayerMeasurer {
public:
    LayerMeasurer(const Grid& grid, const ProcessSettings& settings)
        : shares_(FindWindowShares(grid, settings)) {}

    /// The layers of a stack, the lowest first.
    std::vector<MeasuredLayer> Measure(const Stack& stack);

private:
    /// What the layer in a slot of the stack measured, until its surfaces change.
    struct Measured {
        std::shared_ptr<const SurfaceVersion> version;
        LayerNumbers numbers;
    };

    WindowShares shares_;
    std::vector<Measured> measured_;
};

}  // namespace zelmo
