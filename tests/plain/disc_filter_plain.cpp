#include "tests/plain/disc_filter_plain.h"

#include <cstddef>
#include <cstdint>
#include <vector>

#include "model/process_model.h"
#include "tests/plain/neighbour_table_plain.h"

namespace zelmo {

namespace {

bool InGrid(const ProcessModel& model, std::int32_t col, std::int32_t row) {
    return col >= 0 && col < model.gridColumns && row >= 0 && row < model.gridRows;
}

std::size_t CellAt(const ProcessModel& model, std::int32_t col, std::int32_t row) {
    return static_cast<std::size_t>(row * model.gridColumns + col);
}

void TakeMeans(Layer& layer, const std::vector<float>& means) {
    for (std::size_t i = 0; i < means.size(); ++i) {
        if (layer.bottom[i] > means[i]) {
            layer.top[i] = layer.bottom[i];
        } else {
            layer.top[i] = means[i];
        }
    }
}

}  // namespace

void SmoothLayerTopPlain(const ProcessModel& model, Layer& layer, float radius) {
    const std::vector<GridOffset> disc = SelectDiscOffsetsPlain(model, radius);
    const std::vector<GridOffset> edge = SelectLeavingOffsetsPlain(model, radius);
    std::vector<float> means(layer.top.size());
    for (std::int32_t row = 0; row < model.gridRows; ++row) {
        double sum = 0.0;
        int count = 0;
        for (std::int32_t col = 0; col < model.gridColumns; ++col) {
            if (col == 0) {
                for (const GridOffset& offset : disc) {
                    if (InGrid(model, offset.dx, row + offset.dy)) {
                        sum += layer.top[CellAt(model, offset.dx, row + offset.dy)];
                        count += 1;
                    }
                }
            } else {
                for (const GridOffset& offset : edge) {
                    if (InGrid(model, col + offset.dx, row + offset.dy)) {
                        sum -= layer.top[CellAt(model, col + offset.dx, row + offset.dy)];
                        count -= 1;
                    }
                    if (InGrid(model, col - offset.dx - 1, row + offset.dy)) {
                        sum += layer.top[CellAt(model, col - offset.dx - 1, row + offset.dy)];
                        count += 1;
                    }
                }
            }
            means[CellAt(model, col, row)] = static_cast<float>(sum / static_cast<double>(count));
        }
    }
    TakeMeans(layer, means);
}

void SmoothLayerTopDirect(const ProcessModel& model, Layer& layer, float radius) {
    const std::vector<GridOffset> disc = SelectDiscOffsetsPlain(model, radius);
    std::vector<float> means(layer.top.size());
    for (std::int32_t row = 0; row < model.gridRows; ++row) {
        for (std::int32_t col = 0; col < model.gridColumns; ++col) {
            double sum = 0.0;
            int count = 0;
            for (const GridOffset& offset : disc) {
                if (InGrid(model, col + offset.dx, row + offset.dy)) {
                    sum += layer.top[CellAt(model, col + offset.dx, row + offset.dy)];
                    count += 1;
                }
            }
            means[CellAt(model, col, row)] = static_cast<float>(sum / count);
        }
    }
    TakeMeans(layer, means);
}

}  // namespace zelmo
