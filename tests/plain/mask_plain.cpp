#include "tests/plain/mask_plain.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <stdexcept>
#include <vector>

#include "base/conversions.h"
#include "model/grid/grid.h"
#include "tests/plain/neighbour_table_plain.h"

namespace zelmo {

namespace {

bool IsInside(const Grid& grid, int col, int row) {
    return col >= 0 && col < grid.columns && row >= 0 && row < grid.rows;
}

std::size_t At(const Grid& grid, int col, int row) {
    return static_cast<std::size_t>(row * grid.columns + col);
}

}  // namespace

bool PointInPolygonPlain(const MaskPolygon& polygon, double x, double y) {
    const std::vector<MaskPoint>& p = polygon.points;
    if (p.empty()) {
        throw std::out_of_range("invalid vector subscript");
    }
    bool result = false;
    std::size_t j = p.size() - 1;
    for (std::size_t i = 0; i < p.size(); ++i) {
        if ((p[i].y > y) != (p[j].y > y)) {
            const double xc = (p[j].x - p[i].x) * (y - p[i].y) / (p[j].y - p[i].y) + p[i].x;
            if (xc > x) {
                result = !result;
            }
        }
        j = i;
    }
    return result;
}

double RasteriseMaskPlain(const Grid& grid, std::span<const MaskPolygon> polygons,
                          std::span<std::uint8_t> rawMask, std::span<const MaskLayer> mask,
                          bool maskDark) {
    for (std::uint8_t& cell : rawMask) {
        cell = maskDark ? 0 : 1;
    }
    float smallest = 3.4028235e38f;
    for (const MaskPolygon& polygon : polygons) {
        bool drawn = false;
        for (const MaskLayer& layer : mask) {
            if (polygon.layer == layer.layer &&
                (!layer.datatype || *layer.datatype == polygon.datatype)) {
                drawn = true;
            }
        }
        if (!drawn) {
            continue;
        }
        const double s = grid.spacing;
        const int col0 = std::max(TruncateToI32(std::floor(polygon.minX / s)), 0);
        const int row0 = std::max(TruncateToI32(std::floor(polygon.minY / s)), 0);
        const int col1 = std::min(TruncateToI32(std::floor(polygon.maxX / s)), grid.columns);
        const int row1 = std::min(TruncateToI32(std::floor(polygon.maxY / s)), grid.rows);
        for (int row = row0; row < row1; ++row) {
            for (int col = col0; col < col1; ++col) {
                const float x = static_cast<float>(col) * grid.spacing;
                const float y = static_cast<float>(row) * grid.spacing;
                if (PointInPolygonPlain(polygon, static_cast<double>(x), static_cast<double>(y))) {
                    rawMask[At(grid, col, row)] = maskDark ? 1 : 0;
                }
            }
        }
        const double height = polygon.maxY - polygon.minY;
        const double width = polygon.maxX - polygon.minX;
        const double size = width < height ? width : height;
        if (size < static_cast<double>(smallest)) {
            smallest = static_cast<float>(size);
        }
    }
    return static_cast<double>(smallest);
}

void BlurMaskPlain(const Grid& grid, std::span<std::uint8_t> mask,
                   std::span<const std::uint8_t> rawMask, float radius) {
    const std::vector<GridOffset> disc = SelectDiscOffsetsPlain(grid, radius);
    const std::vector<GridOffset> edge = SelectLeavingOffsetsPlain(grid, radius);
    for (int row = 0; row < grid.rows; ++row) {
        int total = 0;
        int on = 0;
        const auto take = [&](int col, int r, int sign) {
            if (IsInside(grid, col, r)) {
                total += sign;
                on += rawMask[At(grid, col, r)] != 0 ? sign : 0;
            }
        };
        for (int col = 0; col < grid.columns; ++col) {
            if (col == 0) {
                for (const GridOffset& offset : disc) {
                    take(offset.dx, row + offset.dy, 1);
                }
            } else {
                for (const GridOffset& offset : edge) {
                    take(col + offset.dx, row + offset.dy, -1);
                    take(col - offset.dx - 1, row + offset.dy, 1);
                }
            }
            const bool majority = static_cast<float>(on) > static_cast<float>(total) * 0.5f;
            mask[At(grid, col, row)] = majority ? 1 : 0;
        }
    }
}

void MaskEdgeDistancePlain(const Grid& grid, std::span<float> edgeDistance,
                           std::span<const std::uint8_t> mask) {
    const std::vector<NeighbourOffset>& table = grid.neighbours.entries;
    float running = 0.0f;
    float rowSeed = 0.0f;
    for (int row = 0; row < grid.rows; ++row) {
        running = rowSeed;
        for (int col = 0; col < grid.columns; ++col) {
            if (mask[At(grid, col, row)] == 0) {
                edgeDistance[At(grid, col, row)] = 0.0f;
                running = 0.0f;
                rowSeed = 0.0f;
                continue;
            }
            if (row == 0 && col == 0) {
                bool found = false;
                for (const NeighbourOffset& entry : table) {
                    if (IsInside(grid, entry.dx, entry.dy) &&
                        mask[At(grid, entry.dx, entry.dy)] == 0) {
                        running = entry.distance;
                        edgeDistance[0] = running;
                        rowSeed = running;
                        found = true;
                        break;
                    }
                }
                if (!found) {
                    std::fill(edgeDistance.begin(), edgeDistance.end(), 3.4028235e38f);
                    return;
                }
                continue;
            }
            std::int32_t start = 0;
            if (running != 0.0f) {
                std::int64_t k = TruncateToI32((running - grid.spacing) / grid.spacing);
                k = k - 1;
                k = k < 0 ? 0 : k;
                start = grid.distanceIndex.at(static_cast<std::size_t>(k));
            }
            for (std::size_t i = static_cast<std::size_t>(start); i < table.size(); ++i) {
                const int x = col + table[i].dx;
                const int y = row + table[i].dy;
                if (IsInside(grid, x, y) && mask[At(grid, x, y)] == 0) {
                    running = table[i].distance;
                    break;
                }
            }
            edgeDistance[At(grid, col, row)] = running;
            if (col == 0) {
                rowSeed = running;
            }
        }
    }
}

}  // namespace zelmo
