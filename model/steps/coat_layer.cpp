#include "model/steps/coat_layer.h"

#include <cstddef>
#include <cstdint>

#include "base/row_bands.h"
#include "model/disc/disc_filter.h"
#include "model/grid/grid.h"
#include "model/stack.h"

namespace zelmo {

void CoatLayer(const Grid& grid, std::span<const CoverCell> coverMap, Layer& layer, float thickness,
               float planarisation) {
    const CoverCell* const cover = coverMap.data();
    float* const bottom = layer.bottom.data();
    float* const top = layer.top.data();
    const std::ptrdiff_t cols = grid.columns;
    ForRowBands(grid.rows, 64, [=](std::int32_t firstRow, std::int32_t endRow) {
        for (std::ptrdiff_t cell = firstRow * cols; cell < endRow * cols; ++cell) {
            bottom[cell] = cover[cell].height;
            top[cell] = thickness + cover[cell].height;
        }
    });
    SmoothLayerTop(grid, layer, thickness * 2.2f * planarisation);
}

}  // namespace zelmo
