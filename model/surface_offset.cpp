#include "model/surface_offset.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <optional>
#include <vector>

#include "model/conversions.h"
#include "model/nearest_value.h"

// Results are reproduced to the bit: the order of every sum and product here is part of them.

namespace zelmo {

namespace {

constexpr float missing = 0.0f;

/// How far outside a triangle a cell may lie and still take its height, in barycentric units.
constexpr float insideLow = -0.001f;
constexpr float insideHigh = 1.001f;

struct Vector {
    float x = 0.0f;
    float y = 0.0f;
    float z = 0.0f;
};

Vector operator-(const Vector& a, const Vector& b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}

Vector& operator+=(Vector& a, const Vector& b) {
    a.x += b.x;
    a.y += b.y;
    a.z += b.z;
    return a;
}

float Dot(const Vector& a, const Vector& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

Vector Cross(const Vector& a, const Vector& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

std::size_t CellIndex(std::int32_t cols, std::int32_t col, std::int32_t row) {
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(cols) +
           static_cast<std::size_t>(col);
}

bool IsMissing(float value) {
    return value == missing;
}

// NaN: skipped, unless it is the first.
float Smallest(float a, float b, float c) {
    float result = a;
    if (b < result) {
        result = b;
    }
    if (c < result) {
        result = c;
    }
    return result;
}

float Largest(float a, float b, float c) {
    float result = a;
    if (b > result) {
        result = b;
    }
    if (c > result) {
        result = c;
    }
    return result;
}

/// The sum of the cross products of the triangle fan around a cell, counter-clockwise seen from
/// above.
Vector SumOfFan(std::int32_t cols, std::int32_t rows, float spacing, std::span<const float> heights,
                std::int32_t col, std::int32_t row) {
    const float height = heights[CellIndex(cols, col, row)];
    const auto toNeighbour = [&](std::int32_t dcol, std::int32_t drow) {
        return Vector{static_cast<float>(dcol) * spacing, static_cast<float>(drow) * spacing,
                      heights[CellIndex(cols, col + dcol, row + drow)] - height};
    };
    const bool hasLeft = col > 0;
    const bool hasRight = col < cols - 1;
    const bool hasDown = row > 0;
    const bool hasUp = row < rows - 1;

    Vector sum;
    const auto addSquare = [&sum](const Vector& first, const Vector& middle, const Vector& last) {
        sum += Cross(first, middle);
        sum += Cross(middle, last);
    };
    if (hasLeft && hasUp) {
        addSquare(toNeighbour(0, 1), toNeighbour(-1, 1), toNeighbour(-1, 0));
    }
    if (hasLeft && hasDown) {
        addSquare(toNeighbour(-1, 0), toNeighbour(-1, -1), toNeighbour(0, -1));
    }
    if (hasRight && hasDown) {
        addSquare(toNeighbour(0, -1), toNeighbour(1, -1), toNeighbour(1, 0));
    }
    if (hasRight && hasUp) {
        addSquare(toNeighbour(1, 0), toNeighbour(1, 1), toNeighbour(0, 1));
    }
    return sum;
}

/// The surface's vertices after the move, one per cell.
std::vector<Vector> DisplaceVertices(std::int32_t cols, std::int32_t rows, float spacing,
                                     std::span<const float> heights, float distance,
                                     float lateral) {
    std::vector<float> normals(3 * heights.size());
    ComputeVertexNormals(cols, rows, spacing, normals, heights);

    std::vector<Vector> vertices(heights.size());
    for (std::int32_t row = 0; row < rows; ++row) {
        for (std::int32_t col = 0; col < cols; ++col) {
            const std::size_t i = CellIndex(cols, col, row);
            // The rise does not depend on the slope: a film has its full thickness on top.
            vertices[i].x = static_cast<float>(col) * spacing + normals[3 * i] * lateral * distance;
            vertices[i].y =
                static_cast<float>(row) * spacing + normals[3 * i + 1] * lateral * distance;
            vertices[i].z = distance + heights[i];
        }
    }
    return vertices;
}

/// The grid that triangles are scanned onto, and which of two heights a cell keeps.
struct Raster {
    std::int32_t cols = 0;
    std::int32_t rows = 0;
    float spacing = 0.0f;
    bool lowestWins = false;
    std::vector<float> heights;
};

void Keep(float& cell, float height, bool lowestWins) {
    if (IsMissing(cell) || (lowestWins ? cell > height : height > cell)) {
        cell = height;
    }
}

/// Writes the height of the triangle's plane into every cell that lies in the triangle.
void RasteriseTriangle(Raster& raster, const Vector& a, const Vector& b, const Vector& c) {
    const float spacing = raster.spacing;
    const Vector normal = Cross(b - a, c - a);
    const std::int32_t minCol = std::max(0, TruncateToI32(Smallest(a.x, b.x, c.x) / spacing));
    const std::int32_t maxCol =
        std::min(raster.cols - 1, TruncateToI32(Largest(a.x, b.x, c.x) / spacing) + 1);
    const std::int32_t minRow = std::max(0, TruncateToI32(Smallest(a.y, b.y, c.y) / spacing));
    const std::int32_t maxRow =
        std::min(raster.rows - 1, TruncateToI32(Largest(a.y, b.y, c.y) / spacing) + 1);

    const float planeAtOrigin = a.y * normal.y + a.x * normal.x + a.z * normal.z;
    const Vector e0 = c - a;
    const Vector e1 = b - a;
    const float d00 = Dot(e0, e0);
    const float d01 = Dot(e0, e1);
    const float d11 = Dot(e1, e1);
    const float inverse = 1.0f / (d11 * d00 - d01 * d01);

    for (std::int32_t row = minRow; row <= maxRow; ++row) {
        const float y = static_cast<float>(row) * spacing;
        for (std::int32_t col = minCol; col <= maxCol; ++col) {
            const float x = static_cast<float>(col) * spacing;
            const float z = (planeAtOrigin - x * normal.x - y * normal.y) / normal.z;
            const Vector p = Vector{x, y, z} - a;
            const float d02 = Dot(e0, p);
            const float d12 = Dot(e1, p);
            const float u = (d11 * d02 - d12 * d01) * inverse;
            const float v = (d12 * d00 - d02 * d01) * inverse;
            // Triangles seen edge-on give NaN here and drop out.
            if (u >= insideLow && v >= insideLow && insideHigh >= u + v) {
                Keep(raster.heights[CellIndex(raster.cols, col, row)], z, raster.lowestWins);
            }
        }
    }
}

float DistanceBetween(float spacing, std::int32_t colA, std::int32_t rowA, std::int32_t colB,
                      std::int32_t rowB) {
    const float dx = static_cast<float>(colB) * spacing - static_cast<float>(colA) * spacing;
    const float dy = static_cast<float>(rowB) * spacing - static_cast<float>(rowA) * spacing;
    return std::sqrt(dy * dy + dx * dx);
}

/// The mean of the hits at the smallest distance. Not found where no hit is.
LineHit MeanOfNearest(const std::array<LineHit, 4>& hits) {
    constexpr float none = std::numeric_limits<float>::max();
    float nearest = none;
    for (const LineHit& hit : hits) {
        if (hit.found && hit.distance < nearest) {
            nearest = hit.distance;
        }
    }
    if (nearest == none) {
        return {};
    }
    float sum = 0.0f;
    std::int32_t count = 0;
    for (const LineHit& hit : hits) {
        if (hit.found && hit.distance == nearest) {
            sum += hit.value;
            ++count;
        }
    }
    return {sum / static_cast<float>(count), nearest, true};
}

}  // namespace

void OffsetSurface(const ProcessModel& model, std::span<float> out, std::span<const float> heights,
                   float distance, float lateral) {
    const std::int32_t cols = model.gridColumns;
    const std::int32_t rows = model.gridRows;
    const float spacing = model.gridSpacing;
    const std::vector<Vector> vertices =
        DisplaceVertices(cols, rows, spacing, heights, distance, lateral);

    Raster raster;
    raster.cols = cols;
    raster.rows = rows;
    raster.spacing = spacing;
    raster.lowestWins = 0.0f > distance;
    raster.heights.resize(model.CellCount());
    for (std::int32_t row = 0; row + 1 < rows; ++row) {
        for (std::int32_t col = 0; col + 1 < cols; ++col) {
            const Vector& a = vertices[CellIndex(cols, col, row)];
            const Vector& b = vertices[CellIndex(cols, col + 1, row)];
            const Vector& c = vertices[CellIndex(cols, col, row + 1)];
            const Vector& d = vertices[CellIndex(cols, col + 1, row + 1)];
            RasteriseTriangle(raster, a, b, c);
            RasteriseTriangle(raster, b, d, c);
        }
    }
    FillMissingCells(cols, rows, spacing, out, raster.heights);
}

void ComputeVertexNormals(std::int32_t cols, std::int32_t rows, float spacing,
                          std::span<float> normals, std::span<const float> heights) {
    for (std::int32_t row = 0; row < rows; ++row) {
        for (std::int32_t col = 0; col < cols; ++col) {
            const Vector sum = SumOfFan(cols, rows, spacing, heights, col, row);
            const float length = std::sqrt(Dot(sum, sum));
            float* normal = &normals[3 * CellIndex(cols, col, row)];
            // Divided one by one: a reciprocal would round differently. NaN gives no normal.
            const bool hasNormal = length > 0.0f;
            normal[0] = hasNormal ? sum.x / length : 0.0f;
            normal[1] = hasNormal ? sum.y / length : 0.0f;
            normal[2] = hasNormal ? sum.z / length : 0.0f;
        }
    }
}

std::int32_t FillMissingCells(std::int32_t cols, std::int32_t rows, float spacing,
                              std::span<float> out, std::span<const float> in) {
    if (std::all_of(in.begin(), in.end(), IsMissing)) {
        std::fill(out.begin(), out.end(), missing);
        return 0;
    }
    std::int32_t filled = 0;
    std::optional<ValuedColumns> valued;  // made when the first cell needs it, which is rare
    for (std::int32_t row = 0; row < rows; ++row) {
        for (std::int32_t col = 0; col < cols; ++col) {
            const std::size_t i = CellIndex(cols, col, row);
            if (!IsMissing(in[i])) {
                out[i] = in[i];
                continue;
            }
            const auto along = [&](std::int32_t stepCol, std::int32_t stepRow) {
                return FindAlongLine(cols, rows, spacing, col, row, stepCol, stepRow, in);
            };
            const LineHit hit =
                MeanOfNearest({along(0, 1), along(-1, 0), along(0, -1), along(1, 0)});
            if (hit.found) {
                out[i] = hit.value;
            } else {
                if (!valued) {
                    valued = FindValuedColumns(cols, rows, in);
                }
                out[i] = in[static_cast<std::size_t>(FindNearestValue(*valued, spacing, col, row))];
            }
            ++filled;
        }
    }
    return filled;
}

LineHit FindAlongLine(std::int32_t cols, std::int32_t rows, float spacing, std::int32_t startCol,
                      std::int32_t startRow, std::int32_t stepCol, std::int32_t stepRow,
                      std::span<const float> in) {
    LineHit hit;
    std::int32_t firstCol = 0;
    std::int32_t firstRow = 0;
    std::int32_t col = startCol + stepCol;
    std::int32_t row = startRow + stepRow;
    for (; col >= 0 && col < cols && row >= 0 && row < rows; col += stepCol, row += stepRow) {
        const float value = in[CellIndex(cols, col, row)];
        if (IsMissing(value)) {
            continue;
        }
        if (!hit.found) {
            hit.found = true;
            hit.value = value;
            hit.distance = DistanceBetween(spacing, startCol, startRow, col, row);
            firstCol = col;
            firstRow = row;
            continue;
        }
        const float ratio = DistanceBetween(spacing, startCol, startRow, col, row) /
                            DistanceBetween(spacing, firstCol, firstRow, col, row);
        hit.value = value - ratio * (value - hit.value);
        break;
    }
    return hit;
}

}  // namespace zelmo
