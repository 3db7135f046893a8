#include "model/grid/shown_window.h"

#include <algorithm>

#include "base/conversions.h"
#include "model/grid/grid.h"

namespace zelmo {

ShownWindow FindShownWindow(std::int32_t columns, std::int32_t rows, std::int32_t marginCols,
                            std::int32_t marginRows) {
    ShownWindow window;
    // A margin below nothing comes from a position that single precision cannot hold.
    window.marginCols = std::max(marginCols, 0);
    window.marginRows = std::max(marginRows, 0);
    window.gridColumns = columns;
    const std::int64_t width = std::int64_t{columns} - 2 * std::int64_t{window.marginCols};
    const std::int64_t height = std::int64_t{rows} - 2 * std::int64_t{window.marginRows};
    if (width > 0 && height > 0) {
        window.cols = static_cast<std::int32_t>(width);
        window.rows = static_cast<std::int32_t>(height);
    }
    return window;
}

ShownWindow FindShownWindow(const Grid& grid) {
    return FindShownWindow(grid.columns, grid.rows, TruncateToI32(grid.marginX / grid.spacing),
                           TruncateToI32(grid.marginY / grid.spacing));
}

}  // namespace zelmo
