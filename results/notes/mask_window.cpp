#include "results/notes/mask_window.h"

#include <fmt/format.h>

#include <algorithm>

#include "model/process_model.h"

namespace zelmo {

namespace {

/// Whether the box of a polygon, grown by a bias and moved, reaches into the window.
bool ReachesIn(const Grid& grid, const MaskPolygon& polygon, const MaskAdjustment& adjustment) {
    const double bias = adjustment.bias;
    const double x = adjustment.shiftX;
    const double y = adjustment.shiftY;
    const double left = grid.marginX;
    const double low = grid.marginY;
    return polygon.maxX + bias + x > left && polygon.minX - bias + x < grid.width - left &&
           polygon.maxY + bias + y > low && polygon.minY - bias + y < grid.height - low;
}

}  // namespace

LayerCounts LayersInWindow(const ProcessModel& model) {
    LayerCounts counts;
    for (const MaskPolygon& polygon : model.polygons) {
        if (ReachesIn(model.grid, polygon, {})) {
            ++counts[{polygon.layer, polygon.datatype}];
        }
    }
    return counts;
}

bool HasPolygonsInWindow(const ProcessModel& model, const ProcessStep& photo) {
    return std::any_of(model.polygons.begin(), model.polygons.end(),
                       [&](const MaskPolygon& polygon) {
                           return IsPartOf(photo.mask, polygon.layer, polygon.datatype) &&
                                  ReachesIn(model.grid, polygon, photo.adjustment);
                       });
}

std::string MaskText(std::span<const MaskLayer> mask) {
    std::string text;
    for (const MaskLayer& layer : mask) {
        text += fmt::format("{}{}", text.empty() ? "" : ",", layer.layer);
        if (layer.datatype) {
            text += fmt::format("/{}", *layer.datatype);
        }
    }
    return text;
}

}  // namespace zelmo
