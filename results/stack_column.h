#pragma once

#include <optional>
#include <vector>

#include "results/layer_facts.h"

namespace zelmo {

struct GridPosition;
struct ProcessModel;

/// A layer at some place, or the empty room between two.
struct ColumnPart {
    std::optional<LayerFacts> layer;  ///< none: a gap
    double from = 0.0;                ///< nanometres above the substrate's upper side
    double to = 0.0;

    double Thickness() const { return to - from; }
};

/// What lies above a point of the grid, from the top of the stack down, as it is drawn there. A
/// layer of no thickness (`noThickness`) is not there, and so it is with gaps. Where layers
/// overlap, which surfaces between cells may, each is told with its own heights.
std::vector<ColumnPart> ReadStackColumn(const ProcessModel& model, const GridPosition& position);

}  // namespace zelmo
