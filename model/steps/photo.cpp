#include <cmath>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "model/coating.h"
#include "model/cover_map.h"
#include "model/mask.h"
#include "model/process_model.h"
#include "model/steps/steps.h"
#include "shell/debug_trace.h"

namespace zelmo {

namespace {

constexpr float steepestTaper = 89.0f;

/// The rise of the resist's edge per unit of distance, for an angle in degrees from the horizontal.
float EdgeSlope(float taper) {
    const float angle = (taper < steepestTaper ? taper : steepestTaper) * 3.1415927f / 180.0f;
    // The tangent in double precision, rounded: the C libraries differ in single precision.
    return static_cast<float>(std::tan(static_cast<double>(angle)));
}

/// Removes the resist outside the mask and slopes its edges.
void CutResist(Layer& layer, const std::vector<std::uint8_t>& mask,
               const std::vector<float>& edgeDistance, float thickness, float slope) {
    for (std::size_t cell = 0; cell < mask.size(); ++cell) {
        float& top = layer.top[cell];
        const float bottom = layer.bottom[cell];
        if (mask[cell] == 0) {
            top = bottom;
            continue;
        }
        const float cut = thickness - edgeDistance[cell] * slope;
        if (cut > 0.0f) {
            top -= cut;
        }
        if (bottom > top) {
            top = bottom;
        }
    }
}

}  // namespace

void ExecutePhoto(ProcessModel& model, const ProcessStep& step) {
    DebugTrace("Executing photo");
    auto layer = CreateLayer(model.gridRows, model.gridColumns, model.gridSpacing, model.graphics);
    layer->material = step.material;
    layer->label = step.label;
    layer->color = step.color;
    layer->alpha = step.alpha;
    layer->isPhotoresist = true;
    CoatLayer(model, *layer, step.thickness, 1.0f);

    std::vector<std::uint8_t> rawMask(model.CellCount());
    RasteriseMask(model, rawMask, step.maskId, step.maskDark);
    std::vector<std::uint8_t> mask(model.CellCount());
    BlurMask(model, mask, rawMask, step.res * 0.5f);
    std::vector<float> edgeDistance(model.CellCount());
    MaskEdgeDistance(model, edgeDistance, mask);

    CutResist(*layer, mask, edgeDistance, step.thickness, EdgeSlope(step.taper));
    AppendLayer(model, std::move(layer));
    UpdateCoverMap(model);
}

}  // namespace zelmo
