#include <cmath>
#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include "base/debug_trace.h"
#include "base/row_bands.h"
#include "model/cover_map.h"
#include "model/grid/grid.h"
#include "model/mask/adjusted_mask.h"
#include "model/mask/mask.h"
#include "model/process.h"
#include "model/stack.h"
#include "model/steps/coat_layer.h"
#include "model/steps/steps.h"

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
    ForRowBands(layer.rows, 64, [&](std::int32_t firstRow, std::int32_t endRow) {
        const auto cols = static_cast<std::size_t>(layer.cols);
        const std::size_t end = static_cast<std::size_t>(endRow) * cols;
        for (std::size_t cell = static_cast<std::size_t>(firstRow) * cols; cell < end; ++cell) {
            float& top = layer.top[cell];
            const float bottom = layer.bottom[cell];
            const float cut = thickness - edgeDistance[cell] * slope;
            const float sloped = cut > 0.0f ? top - cut : top;
            const float height = bottom > sloped ? bottom : sloped;
            top = mask[cell] == 0 ? bottom : height;
        }
    });
}

void DrawMask(const Grid& grid, std::span<const MaskPolygon> polygons,
              std::span<std::uint8_t> rawMask, const ProcessStep& step) {
    if (step.adjustment == MaskAdjustment()) {
        RasteriseMask(grid, polygons, rawMask, step.mask, step.maskDark);
        return;
    }
    const std::vector<MaskPolygon> adjusted =
        AdjustMask(grid, polygons, step.mask, step.adjustment);
    RasteriseMask(grid, adjusted, rawMask, step.mask, step.maskDark);
}

}  // namespace

void ExecutePhoto(Stack& stack, const Grid& grid, std::span<const MaskPolygon> polygons,
                  const ProcessStep& step) {
    DebugTrace("Executing photo");
    auto layer = CreateLayer(grid, step);
    layer->isPhotoresist = true;
    CoatLayer(grid, stack.coverMap, *layer, step.thickness, 1.0f);

    std::vector<std::uint8_t> rawMask(grid.CellCount());
    DrawMask(grid, polygons, rawMask, step);
    std::vector<std::uint8_t> mask(grid.CellCount());
    BlurMask(grid, mask, rawMask, step.res * 0.5f);
    std::vector<float> edgeDistance(grid.CellCount());
    MaskEdgeDistance(grid, edgeDistance, mask);

    CutResist(*layer, mask, edgeDistance, step.thickness, EdgeSlope(step.taper));
    AppendLayer(stack, std::move(layer));
    UpdateCoverMap(stack, grid);
}

}  // namespace zelmo
