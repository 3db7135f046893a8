#include "process_run/fitted_window.h"

#include <fmt/format.h>

#include <algorithm>

#include "gds/gds_database.h"
#include "gds/layer_box.h"
#include "model/process.h"
#include "process_run/mask_polygons.h"

namespace zelmo {

namespace {

/// Margins and widening in double precision, so that the sides are rounded once.
GivenWindow WindowAround(const GdsRect& box, double micronsPerUnit, double margin) {
    const auto toMicrons = [&](std::int64_t units) {
        return static_cast<double>(units) * micronsPerUnit;
    };
    const double height = toMicrons(box.ymax) - toMicrons(box.ymin) + 2.0 * margin;
    const double drawnWidth = toMicrons(box.xmax) - toMicrons(box.xmin) + 2.0 * margin;
    const double width = std::max(drawnWidth, height);
    const double x = toMicrons(box.xmin) - margin - (width - drawnWidth) / 2.0;
    const double y = toMicrons(box.ymin) - margin;
    return {static_cast<float>(x), static_cast<float>(y), static_cast<float>(width),
            static_cast<float>(height)};
}

}  // namespace

WindowFit FitWindow(const GdsDatabase& database, const std::string& cellName,
                    std::span<const ProcessStep> steps, FittedWindow choice) {
    const LayerBox drawn = FindLayerBox(database, cellName, [&](const RawPolygon& polygon) {
        return std::any_of(steps.begin(), steps.end(), [&](const ProcessStep& step) {
            return step.kind == StepKind::Photo &&
                   IsPartOf(step.mask, polygon.layer, polygon.datatype);
        });
    });
    if (drawn.refusal) {
        return {{}, ExtractionFailureLine(*drawn.refusal, cellName)};
    }
    if (!drawn.box) {
        return {{},
                fmt::format("ERROR: No window fits: cell {} draws nothing on the masks of the "
                            "process; give a window, or another cell",
                            NameText(cellName))};
    }
    return {WindowAround(*drawn.box, database.micronsPerUnit, choice.margin), {}};
}

}  // namespace zelmo
