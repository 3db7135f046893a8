#include "tests/plain/surface_offset_plain.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "base/conversions.h"

namespace zelmo {

namespace {

std::size_t At(int cols, int col, int row) {
    return static_cast<std::size_t>(row * cols + col);
}

Point3 Difference(const Point3& a, const Point3& b) {
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

Point3 CrossProduct(const Point3& a, const Point3& b) {
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

float DotProduct(const Point3& a, const Point3& b) {
    float sum = a[0] * b[0];
    sum = sum + a[1] * b[1];
    sum = sum + a[2] * b[2];
    return sum;
}

/// The neighbours of a cell in the order of the fan, up first, then counter-clockwise.
constexpr int fan[8][2] = {{0, 1}, {-1, 1}, {-1, 0}, {-1, -1}, {0, -1}, {1, -1}, {1, 0}, {1, 1}};

/// The squares around a cell: the pairs of the fan that span each one's two cross products.
struct FanSquare {
    bool left;
    bool lower;
    int pairs[2][2];
};
constexpr FanSquare squares[4] = {
    {true, false, {{0, 1}, {1, 2}}},
    {true, true, {{2, 3}, {3, 4}}},
    {false, true, {{4, 5}, {5, 6}}},
    {false, false, {{6, 7}, {7, 0}}},
};

float SmallestOfThree(float a, float b, float c) {
    float smallest = a;
    smallest = smallest > b ? b : smallest;
    smallest = smallest > c ? c : smallest;
    return smallest;
}

float LargestOfThree(float a, float b, float c) {
    float largest = a;
    largest = largest < b ? b : largest;
    largest = largest < c ? c : largest;
    return largest;
}

OffsetTriangle MakeTriangle(int cols, int rows, float spacing, const Point3& a, const Point3& b,
                            const Point3& c) {
    OffsetTriangle triangle;
    triangle.a = a;
    triangle.b = b;
    triangle.c = c;
    triangle.normal = CrossProduct(Difference(b, a), Difference(c, a));
    const auto cell = [spacing](float position) {
        return static_cast<std::int64_t>(TruncateToI32(position / spacing));
    };
    const auto low = [&](int axis) { return cell(SmallestOfThree(a[axis], b[axis], c[axis])); };
    const auto high = [&](int axis) { return cell(LargestOfThree(a[axis], b[axis], c[axis])); };
    triangle.minCol = static_cast<std::int32_t>(std::max<std::int64_t>(0, low(0)));
    triangle.maxCol = static_cast<std::int32_t>(std::min<std::int64_t>(cols - 1, high(0) + 1));
    triangle.minRow = static_cast<std::int32_t>(std::max<std::int64_t>(0, low(1)));
    triangle.maxRow = static_cast<std::int32_t>(std::min<std::int64_t>(rows - 1, high(1) + 1));
    return triangle;
}

/// Whether the cell at (x, y) lies in the triangle, and the height of the triangle's plane there.
bool TestCell(const OffsetTriangle& t, float x, float y, float& z) {
    const Point3& n = t.normal;
    z = (t.a[1] * n[1] + t.a[0] * n[0] + t.a[2] * n[2] - x * n[0] - y * n[1]) / n[2];
    const Point3 e0 = Difference(t.c, t.a);
    const Point3 e1 = Difference(t.b, t.a);
    const Point3 p = Difference({x, y, z}, t.a);
    const float d00 = DotProduct(e0, e0);
    const float d01 = DotProduct(e0, e1);
    const float d11 = DotProduct(e1, e1);
    const float d02 = DotProduct(e0, p);
    const float d12 = DotProduct(e1, p);
    const float inverse = 1.0f / (d11 * d00 - d01 * d01);
    const float u = (d11 * d02 - d12 * d01) * inverse;
    const float v = (d12 * d00 - d02 * d01) * inverse;
    return u >= -0.001f && v >= -0.001f && 1.001f >= u + v;
}

}  // namespace

void ComputeVertexNormalsPlain(std::int32_t cols, std::int32_t rows, float spacing,
                               std::span<float> normals, std::span<const float> heights) {
    for (int row = 0; row < rows; ++row) {
        for (int col = 0; col < cols; ++col) {
            const auto neighbour = [&](int k) -> Point3 {
                const int dcol = fan[k][0];
                const int drow = fan[k][1];
                return {static_cast<float>(dcol) * spacing, static_cast<float>(drow) * spacing,
                        heights[At(cols, col + dcol, row + drow)] - heights[At(cols, col, row)]};
            };
            Point3 sum{0.0f, 0.0f, 0.0f};
            for (const FanSquare& square : squares) {
                if (!(square.left ? col > 0 : col < cols - 1) ||
                    !(square.lower ? row > 0 : row < rows - 1)) {
                    continue;
                }
                for (const auto& pair : square.pairs) {
                    const Point3 cross = CrossProduct(neighbour(pair[0]), neighbour(pair[1]));
                    for (std::size_t axis = 0; axis < 3; ++axis) {
                        sum[axis] = sum[axis] + cross[axis];
                    }
                }
            }
            const float length = std::sqrt((sum[1] * sum[1] + sum[0] * sum[0]) + sum[2] * sum[2]);
            for (std::size_t axis = 0; axis < 3; ++axis) {
                normals[3 * At(cols, col, row) + axis] = length > 0.0f ? sum[axis] / length : 0.0f;
            }
        }
    }
}

std::vector<OffsetTriangle> BuildOffsetTrianglesPlain(std::int32_t cols, std::int32_t rows,
                                                      float spacing, std::span<const float> heights,
                                                      std::span<const float> normals,
                                                      float distance, float lateral) {
    std::vector<OffsetTriangle> triangles;
    if (rows - 1 < 1) {
        return triangles;
    }
    const auto displaced = [&](int col, int row) -> Point3 {
        const std::size_t i = At(cols, col, row);
        const float sidewaysX = (normals[3 * i] * lateral) * distance;
        const float sidewaysY = (normals[3 * i + 1] * lateral) * distance;
        return {static_cast<float>(col) * spacing + sidewaysX,
                static_cast<float>(row) * spacing + sidewaysY, distance + heights[i]};
    };
    for (int i = 0; i <= rows - 2; ++i) {
        for (int j = 0; j <= cols - 2; ++j) {
            const Point3 a = displaced(j, i);
            const Point3 b = displaced(j + 1, i);
            const Point3 c = displaced(j, i + 1);
            const Point3 d = displaced(j + 1, i + 1);
            triangles.push_back(MakeTriangle(cols, rows, spacing, a, b, c));
            triangles.push_back(MakeTriangle(cols, rows, spacing, b, d, c));
        }
    }
    return triangles;
}

LineHitPlain FindAlongLinePlain(std::int32_t cols, std::int32_t rows, float spacing,
                                std::int32_t startCol, std::int32_t startRow, std::int32_t stepCol,
                                std::int32_t stepRow, std::span<const float> in) {
    std::vector<std::array<int, 2>> valued;
    for (int k = 1; valued.size() < 2; ++k) {
        const int col = startCol + k * stepCol;
        const int row = startRow + k * stepRow;
        if (col < 0 || col >= cols || row < 0 || row >= rows) {
            break;
        }
        if (!(in[At(cols, col, row)] == 0.0f)) {
            valued.push_back({col, row});
        }
    }
    LineHitPlain hit;
    if (valued.empty()) {
        return hit;
    }
    const auto length = [spacing](std::array<int, 2> from, std::array<int, 2> to) {
        const float dx =
            static_cast<float>(to[0]) * spacing - static_cast<float>(from[0]) * spacing;
        const float dy =
            static_cast<float>(to[1]) * spacing - static_cast<float>(from[1]) * spacing;
        return std::sqrt(dy * dy + dx * dx);
    };
    const std::array<int, 2> start{startCol, startRow};
    const float first = in[At(cols, valued[0][0], valued[0][1])];
    hit.found = true;
    hit.distance = length(start, valued[0]);
    hit.value = first;
    if (valued.size() == 2) {
        const float second = in[At(cols, valued[1][0], valued[1][1])];
        const float ratio = length(start, valued[1]) / length(valued[0], valued[1]);
        hit.value = second - ratio * (second - first);
    }
    return hit;
}

std::int32_t FillMissingCellsPlain(std::int32_t cols, std::int32_t rows, float spacing,
                                   const NeighbourTable& table, std::span<float> out,
                                   std::span<const float> in) {
    std::int32_t filled = 0;
    for (int row = 0; row < rows; ++row) {
        for (int col = 0; col < cols; ++col) {
            const std::size_t cell = At(cols, col, row);
            if (in[cell] != 0.0f) {
                out[cell] = in[cell];
                continue;
            }
            out[cell] = 0.0f;
            const LineHitPlain hits[4] = {
                FindAlongLinePlain(cols, rows, spacing, col, row, 0, 1, in),
                FindAlongLinePlain(cols, rows, spacing, col, row, -1, 0, in),
                FindAlongLinePlain(cols, rows, spacing, col, row, 0, -1, in),
                FindAlongLinePlain(cols, rows, spacing, col, row, 1, 0, in),
            };
            float best = 3.4028235e38f;
            for (const LineHitPlain& hit : hits) {
                if (hit.found && best > hit.distance) {
                    best = hit.distance;
                }
            }
            if (best != 3.4028235e38f) {
                float sum = 0.0f;
                int count = 0;
                for (const LineHitPlain& hit : hits) {
                    if (hit.found && hit.distance == best) {
                        sum = sum + hit.value;
                        count = count + 1;
                    }
                }
                out[cell] = sum / static_cast<float>(count);
                ++filled;
                continue;
            }
            for (int i = 0; i < table.count; ++i) {
                const NeighbourOffset& entry = table.entries[static_cast<std::size_t>(i)];
                const int x = col + entry.dx;
                const int y = row + entry.dy;
                if (x >= 0 && x < cols && y >= 0 && y < rows && in[At(cols, x, y)] != 0.0f) {
                    out[cell] = in[At(cols, x, y)];
                    ++filled;
                    break;
                }
            }
        }
    }
    return filled;
}

void OffsetSurfacePlain(const Grid& grid, std::span<float> out, std::span<const float> heights,
                        float distance, float lateral) {
    const int cols = grid.columns;
    const int rows = grid.rows;
    const float spacing = grid.spacing;
    std::fill(out.begin(), out.end(), 0.0f);
    std::vector<float> normals(3 * out.size(), 0.0f);
    ComputeVertexNormalsPlain(cols, rows, spacing, normals, heights);
    const std::vector<OffsetTriangle> triangles =
        BuildOffsetTrianglesPlain(cols, rows, spacing, heights, normals, distance, lateral);

    std::vector<float> raster(out.size(), 0.0f);
    const bool lowestWins = 0.0f > distance;
    for (const OffsetTriangle& triangle : triangles) {
        for (int row = triangle.minRow; row <= triangle.maxRow; ++row) {
            for (int col = triangle.minCol; col <= triangle.maxCol; ++col) {
                float z = 0.0f;
                if (!TestCell(triangle, static_cast<float>(col) * spacing,
                              static_cast<float>(row) * spacing, z)) {
                    continue;
                }
                float& value = raster[At(cols, col, row)];
                if (value == 0.0f) {
                    value = z;
                } else if (lowestWins) {
                    if (value > z) {
                        value = z;
                    }
                } else if (z > value) {
                    value = z;
                }
            }
        }
    }
    FillMissingCellsPlain(cols, rows, spacing, grid.neighbours, out, raster);
}

}  // namespace zelmo
