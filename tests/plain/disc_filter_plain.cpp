#include "tests/plain/disc_filter_plain.h"

#include <cstddef>
#include <cstdint>
#include <vector>

#include "model/grid/grid.h"
#include "model/stack.h"
#include "tests/plain/neighbour_table_plain.h"

namespace zelmo {

namespace {

bool InGrid(const Grid& grid, std::int32_t col, std::int32_t row) {
    return col >= 0 && col < grid.columns && row >= 0 && row < grid.rows;
}

std::size_t CellAt(const Grid& grid, std::int32_t col, std::int32_t row) {
    return static_cast<std::size_t>(row * grid.columns + col);
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

void SmoothLayerTopPlain(const Grid& grid, Layer& layer, float radius) {
    const std::vector<GridOffset> disc = SelectDiscOffsetsPlain(grid, radius);
    const std::vector<GridOffset> edge = SelectLeavingOffsetsPlain(grid, radius);
    std::vector<float> means(layer.top.size());
    for (std::int32_t row = 0; row < grid.rows; ++row) {
        double sum = 0.0;
        int count = 0;
        for (std::int32_t col = 0; col < grid.columns; ++col) {
            if (col == 0) {
                for (const GridOffset& offset : disc) {
                    if (InGrid(grid, offset.dx, row + offset.dy)) {
                        sum += layer.top[CellAt(grid, offset.dx, row + offset.dy)];
                        count += 1;
                    }
                }
            } else {
                for (const GridOffset& offset : edge) {
                    if (InGrid(grid, col + offset.dx, row + offset.dy)) {
                        sum -= layer.top[CellAt(grid, col + offset.dx, row + offset.dy)];
                        count -= 1;
                    }
                    if (InGrid(grid, col - offset.dx - 1, row + offset.dy)) {
                        sum += layer.top[CellAt(grid, col - offset.dx - 1, row + offset.dy)];
                        count += 1;
                    }
                }
            }
            means[CellAt(grid, col, row)] = static_cast<float>(sum / static_cast<double>(count));
        }
    }
    TakeMeans(layer, means);
}

void SmoothLayerTopDirect(const Grid& grid, Layer& layer, float radius) {
    const std::vector<GridOffset> disc = SelectDiscOffsetsPlain(grid, radius);
    std::vector<float> means(layer.top.size());
    for (std::int32_t row = 0; row < grid.rows; ++row) {
        for (std::int32_t col = 0; col < grid.columns; ++col) {
            double sum = 0.0;
            int count = 0;
            for (const GridOffset& offset : disc) {
                if (InGrid(grid, col + offset.dx, row + offset.dy)) {
                    sum += layer.top[CellAt(grid, col + offset.dx, row + offset.dy)];
                    count += 1;
                }
            }
            means[CellAt(grid, col, row)] = static_cast<float>(sum / count);
        }
    }
    TakeMeans(layer, means);
}

}  // namespace zelmo
