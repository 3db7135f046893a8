#include "process_run/common_steps.h"

#include <algorithm>
#include <vector>

#include "model/process_model.h"

namespace zelmo {

namespace {

/// Whether stacks are made on the same grid of the same window.
bool HaveSameGrid(const ProcessModel& before, const ProcessModel& now) {
    const Grid& a = before.grid;
    const Grid& b = now.grid;
    return a.columns == b.columns && a.rows == b.rows && a.spacing == b.spacing &&
           a.width == b.width && a.height == b.height && a.originX == b.originX &&
           a.originY == b.originY && a.marginX == b.marginX && a.marginY == b.marginY &&
           before.settings.windowWidth == now.settings.windowWidth &&
           before.settings.windowHeight == now.settings.windowHeight;
}

bool AreEqual(const ProcessStep& before, const ProcessStep& now) {
    ProcessStep moved = before;
    moved.line = now.line;  // other lines above do not change what a step does
    return moved == now;
}

std::vector<const MaskPolygon*> PolygonsOf(const ProcessModel& model, const ProcessStep& step) {
    std::vector<const MaskPolygon*> found;
    for (const MaskPolygon& polygon : model.polygons) {
        if (IsPartOf(step.mask, polygon.layer, polygon.datatype)) {
            found.push_back(&polygon);
        }
    }
    return found;
}

bool HaveSameMask(const ProcessModel& before, const ProcessModel& now, const ProcessStep& step) {
    return std::ranges::equal(
        PolygonsOf(before, step), PolygonsOf(now, step),
        [](const MaskPolygon* one, const MaskPolygon* other) { return *one == *other; });
}

}  // namespace

std::size_t CommonSteps(const ProcessModel& before, const ProcessModel& now) {
    if (!HaveSameGrid(before, now)) {
        return 0;
    }
    const std::size_t most = std::min(before.steps.size(), now.steps.size());
    std::size_t common = 0;
    while (common < most && AreEqual(before.steps[common], now.steps[common]) &&
           (now.steps[common].kind != StepKind::Photo ||
            HaveSameMask(before, now, now.steps[common]))) {
        ++common;
    }
    return common;
}

bool HaveSameView(const ProcessModel& before, const ProcessModel& now) {
    return before.settings.cameraAngle == now.settings.cameraAngle &&
           before.settings.showHeights == now.settings.showHeights &&
           before.settings.showLegend == now.settings.showLegend &&
           before.settings.lengthsInNanometres == now.settings.lengthsInNanometres;
}

}  // namespace zelmo
