#include "gds/record_handlers.h"

#include <algorithm>
#include <span>
#include <stdexcept>
#include <utility>
#include <vector>

#include "gds/cell_bounds.h"
#include "gds/path_outline.h"
#include "gds/path_repair.h"
#include "gds/placement.h"

namespace zelmo {

namespace {

/// Adds a polygon to the cell. Its box is measured here, while the points are still at hand in the
/// processor.
void AddBoundary(LibraryState& state, GdsBoundary boundary) {
    MeasureBoundary(boundary);
    state.flatSeen = state.flatSeen || boundary.points.empty() || SmallerSide(boundary.bounds) == 0;
    state.cell.boundaries.push_back(boundary);
}

Refusal EndBoundary(LibraryState& state) {
    if (!std::exchange(state.open.layerSeen, false)) {
        return LayoutErrorKind::LayerMissing;
    }
    AddBoundary(state, std::exchange(state.open.boundary, GdsBoundary()));
    return accepted;
}

bool FitsNarrow(GdsPoint point) {
    return point.x == static_cast<std::int32_t>(point.x) &&
           point.y == static_cast<std::int32_t>(point.y);
}

/// An outline as the points of a polygon.
PointRun KeepOutline(std::span<const GdsPoint> outline, ElementStore& store) {
    if (!std::all_of(outline.begin(), outline.end(), FitsNarrow)) {
        return store.points.Keep(outline);
    }
    const std::span<NarrowPoint> points = store.narrowPoints.Take(outline.size());
    std::transform(outline.begin(), outline.end(), points.begin(), [](GdsPoint point) {
        return NarrowPoint{static_cast<std::int32_t>(point.x), static_cast<std::int32_t>(point.y)};
    });
    return points;
}

/// Adds what a path means that was refused.
void AddRepaired(LibraryState& state, const CentreLine& path) {
    const RepairedPath repaired = RepairPath({.points = path.points,
                                              .width = static_cast<std::int32_t>(path.width),
                                              .pathType = path.statedType,
                                              .endsTested = path.pathType == extendedEnds,
                                              .variableExtensions = path.extensions});
    for (const std::vector<GdsPoint>& outline : repaired.outlines) {
        AddBoundary(state,
                    {path.layer, path.datatype, KeepOutline(outline, state.store), GdsRect()});
    }
    CountPath(state.repairs, repaired.faults);
}

Refusal EndPath(LibraryState& state) {
    if (!std::exchange(state.open.layerSeen, false)) {
        return LayoutErrorKind::LayerMissing;
    }
    CentreLine& path = state.open.path;
    if (path.points.empty()) {
        throw std::out_of_range("invalid vector subscript");
    }
    path.outline.resize(2 * path.points.size() + 1);
    if (ExpandPath(path.outline, path.points, path.width, path.pathType)) {
        AddBoundary(state,
                    {path.layer, path.datatype, KeepOutline(path.outline, state.store), GdsRect()});
    } else if (state.repair) {
        AddRepaired(state, path);
    } else {
        return LayoutErrorKind::PathNotExpandable;
    }
    path.points.clear();  // and keeps their room for the next path
    path.layer = 0;
    path.datatype = 0;
    path.pathType = 0;
    path.statedType = 0;
    path.extensions = {};
    path.width = 0;
    return accepted;
}

}  // namespace

namespace {

/// A text is kept only where it is asked for.
void EndText(LibraryState& state) {
    const GdsText text = std::exchange(state.open.text, GdsText());
    if (state.keepsTexts) {
        state.cell.texts.push_back(text);
    }
    ++state.skipped.texts;
}

}  // namespace

Refusal EndElement(LibraryState& state, const StreamRecord&) {
    switch (std::exchange(state.open.kind, Element::None)) {
        case Element::Boundary:
            return EndBoundary(state);
        case Element::Path:
            return EndPath(state);
        case Element::Sref:
            state.cell.srefs.push_back(std::exchange(state.open.sref, GdsSref()));
            break;
        case Element::Aref:
            state.cell.arefs.push_back(std::exchange(state.open.aref, GdsAref()));
            break;
        case Element::Text:
            EndText(state);
            break;
        case Element::Node:
            ++state.skipped.nodes;
            break;
        case Element::Box:
            ++state.skipped.boxes;
            break;
        case Element::None:
            break;
    }
    return accepted;
}

}  // namespace zelmo
