#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "results/layer_facts.h"

namespace zelmo {

struct ProcessModel;

/// A layer as a solid: a closed surface of triangles, counter-clockwise from outside. Where it
/// touches itself, each of its parts has vertices of its own. Micrometres from the lower left
/// corner of the window and the underside of the substrate.
struct LayerModel {
    LayerFacts facts;
    std::vector<std::array<float, 3>> vertices;
    std::vector<std::array<std::uint32_t, 3>> triangles;
};

/// The layers of a stack, the lowest first; those that show nothing in the window are left out.
struct StackModel {
    std::vector<LayerModel> layers;
    std::string failure;  ///< why there is no model: one line, empty if there is one
};

/// How exact a model is.
struct ModelAccuracy {
    /// No point of a surface is moved further than that, in nanometres. 0: flat parts are merged
    /// where that moves nothing.
    double tolerance = 0.1;

    /// How much of its volume a layer may win or lose: 1e-5, or more where the tolerance is greater
    /// than by default.
    double VolumeShare() const {
        constexpr double usual = 1e-5;
        constexpr double usualTolerance = 0.1;
        return tolerance > usualTolerance ? usual * tolerance / usualTolerance : usual;
    }
};

/// The model of a stack. Parts of a surface that are flat, but for the tolerance, become few
/// triangles; what is not stays as it is drawn. Throws std::bad_alloc.
StackModel MakeStackModel(const ProcessModel& model, const ModelAccuracy& accuracy);

}  // namespace zelmo
