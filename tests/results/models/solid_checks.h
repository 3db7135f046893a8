#pragma once

#include <string>

#include "results/models/stack_model.h"

namespace zelmo {

struct Layer;
struct ProcessModel;

// Plain and slow checks of a layer's model. Each answers with what is wrong first, or nothing.

/// Every edge has two triangles, which run along it in opposite directions; the triangles around
/// every vertex are one fan; every vertex is used.
std::string WhyNotClosed(const LayerModel& solid);

/// The same edges where equal positions are one vertex: as many triangles run along them in one
/// direction as in the other.
std::string WhyNotClosedByPosition(const LayerModel& solid);

/// No vertex lies within an edge, and every triangle has an area.
std::string WhyNotClean(const LayerModel& solid);

/// At every cell the surfaces are where the layer has them, to `tolerance` nanometres.
std::string WhyMoved(const LayerModel& solid, const Layer& layer, const ProcessModel& model,
                     double tolerance);

/// Cubic micrometres within the solid's surface.
double VolumeOf(const LayerModel& solid);

/// Cubic micrometres between a layer's surfaces as they are drawn, triangle by triangle.
double DrawnVolume(const Layer& layer, const ProcessModel& model);

}  // namespace zelmo
