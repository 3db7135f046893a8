#include "model/grid/grid.h"

#include <cmath>

#include "base/conversions.h"
#include "model/process.h"

namespace zelmo {

void SizeGrid(Grid& grid, const ProcessSettings& settings) {
    grid.columns = settings.gridColumns;
    grid.originX = settings.windowX - settings.windowWidth * 0.1f;
    grid.originY = settings.windowY - settings.windowHeight * 0.1f;
    grid.width = settings.windowWidth * 1.2f;
    grid.spacing = grid.width / static_cast<float>(grid.columns - 1);

    const float rowIntervals = std::round(settings.windowHeight * 1.2f / grid.spacing);
    const std::int32_t lastRow = TruncateToI32(rowIntervals);
    grid.rows = lastRow + 1;
    grid.height = static_cast<float>(lastRow) * grid.spacing;

    grid.marginX = settings.windowX - grid.originX;
    grid.marginY = settings.windowY - grid.originY;
}

}  // namespace zelmo
