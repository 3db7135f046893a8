#include "model/grid/grid_geometry.h"

#include <cmath>

#include "base/conversions.h"
#include "model/process_model.h"

namespace zelmo {

void SizeGrid(ProcessModel& model) {
    model.gridOriginX = model.windowX - model.windowWidth * 0.1f;
    model.gridOriginY = model.windowY - model.windowHeight * 0.1f;
    model.gridWidth = model.windowWidth * 1.2f;
    model.gridSpacing = model.gridWidth / static_cast<float>(model.gridColumns - 1);

    const float rowIntervals = std::round(model.windowHeight * 1.2f / model.gridSpacing);
    const std::int32_t lastRow = TruncateToI32(rowIntervals);
    model.gridRows = lastRow + 1;
    model.gridHeight = static_cast<float>(lastRow) * model.gridSpacing;

    model.marginX = model.windowX - model.gridOriginX;
    model.marginY = model.windowY - model.gridOriginY;
}

}  // namespace zelmo
