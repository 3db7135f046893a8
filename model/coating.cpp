#include "model/coating.h"

#include <cstddef>

#include "model/disc_filter.h"
#include "model/process_model.h"

namespace zelmo {

void CoatLayer(const ProcessModel& model, Layer& layer, float thickness, float dop) {
    for (std::size_t cell = 0; cell < model.CellCount(); ++cell) {
        layer.bottom[cell] = model.coverMap[cell].height;
        layer.top[cell] = thickness + layer.bottom[cell];
    }
    SmoothLayerTop(model, layer, thickness * 2.2f * dop);
}

}  // namespace zelmo
