#include "model/steps/coat_layer.h"

#include <cstddef>
#include <cstdint>

#include "base/row_bands.h"
#include "model/disc/disc_filter.h"
#include "model/process_model.h"

namespace zelmo {

void CoatLayer(const ProcessModel& model, Layer& layer, float thickness, float dop) {
    const CoverCell* const cover = model.coverMap.data();
    float* const bottom = layer.bottom.data();
    float* const top = layer.top.data();
    const std::ptrdiff_t cols = model.gridColumns;
    ForRowBands(model.gridRows, 64, [=](std::int32_t firstRow, std::int32_t endRow) {
        for (std::ptrdiff_t cell = firstRow * cols; cell < endRow * cols; ++cell) {
            bottom[cell] = cover[cell].height;
            top[cell] = thickness + cover[cell].height;
        }
    });
    SmoothLayerTop(model, layer, thickness * 2.2f * dop);
}

}  // namespace zelmo
