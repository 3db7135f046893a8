#pragma once

#include <memory>
#include <string>
#include <vector>

#include "model/grid/places.h"
#include "results/layer_facts.h"
#include "results/probe.h"

namespace zelmo {

struct Grid;
struct ProcessModel;
struct ProcessSettings;
struct SurfaceVersion;

/// A line over the window, as places of the layout.
struct CutLine {
    Place from;
    Place to;
};

/// A point of a cut.
struct CutPoint {
    double along = 0.0;  ///< micrometres from the cut's beginning
    GridPosition position;
    Place place;
};

/// The points at which a cut crosses an edge of the triangles that surfaces are drawn with, and its
/// ends: between neighbouring ones every surface is a straight line.
std::vector<CutPoint> PointsOfCut(const Grid& grid, const CutLine& cut);

/// The surfaces of a layer at the points of a cut, in nanometres above the substrate's upper side.
struct CutHeights {
    std::vector<double> bottom;
    std::vector<double> top;
};

struct CutLayer {
    LayerFacts facts;
    std::shared_ptr<const CutHeights> heights;
};

/// The stack along a cut after a step, the lowest layer first.
struct Section {
    StepName step;
    std::vector<CutLayer> layers;
};

/// Takes the sections of one cut through the steps of a run. A layer that has not changed since the
/// last one shares its heights.
class SectionTaker {
public:
    SectionTaker(const Grid& grid, const CutLine& cut) : points_(PointsOfCut(grid, cut)) {}

    const std::vector<CutPoint>& Points() const { return points_; }

    Section Take(const ProcessModel& model, StepName step);

private:
    struct Kept {
        std::shared_ptr<const SurfaceVersion> version;
        std::shared_ptr<const CutHeights> heights;
    };

    std::vector<CutPoint> points_;
    std::vector<Kept> kept_;  ///< by slot of the stack
};

/// A section as a CSV file with a head line: for each point of the cut its distance from the
/// beginning, its place in the layout in the unit of the process file, and the two heights of each
/// layer, the lowest layer first. They are equal where the layer is not.
std::string SectionCsv(const Section& section, const std::vector<CutPoint>& points,
                       const ProcessSettings& settings);

}  // namespace zelmo
