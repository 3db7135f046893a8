#include "model/offset/surface_offset.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

#include "base/padded_rows.h"
#include "base/row_bands.h"
#include "base/stop_scope.h"
#include "model/grid/grid.h"
#include "model/offset/missing_cells.h"
#include "model/offset/offset_raster_lanes.h"
#include "model/offset/vertex_lanes.h"

// Results are reproduced to the bit: the order of every sum and product, here and in the lane
// kernels, is part of them.

namespace zelmo {

namespace {

/// The height field that is moved, and its grid.
struct Surface {
    std::span<const float> heights;
    std::int32_t cols = 0;
    std::int32_t rows = 0;
    float spacing = 0.0f;

    std::size_t RowStart(std::int32_t row) const {
        return static_cast<std::size_t>(row) * static_cast<std::size_t>(cols);
    }
};

/// A row of a surface with its neighbours, in padded copies.
class SurfaceWindow {
public:
    explicit SurfaceWindow(const Surface& surface)
        : surface_(surface), rows_(heldRows_.size(), surface.cols) {}

    SurfaceRow At(std::int32_t row) {
        const bool hasBelow = row > 0;
        const bool hasAbove = row < surface_.rows - 1;
        return {hasBelow ? Copy(row - 1) : nullptr,
                Copy(row),
                hasAbove ? Copy(row + 1) : nullptr,
                row,
                surface_.cols,
                surface_.spacing};
    }

private:
    /// A copy that is there already serves for the next row as well.
    const float* Copy(std::int32_t row) {
        const auto slot = static_cast<std::size_t>(row) % heldRows_.size();
        if (heldRows_[slot] != row) {
            rows_.Copy(slot, surface_.heights.subspan(surface_.RowStart(row),
                                                      static_cast<std::size_t>(surface_.cols)));
            heldRows_[slot] = row;
        }
        return rows_.At(slot);
    }

    const Surface& surface_;
    std::array<std::int32_t, 3> heldRows_{-1, -1, -1};
    PaddedRows<float> rows_;
};

/// Two neighbouring rows of moved vertices.
class MovedRows {
public:
    explicit MovedRows(std::int32_t cols) : values_(2 * valuesPerVertex, cols) {}

    VertexRow At(std::int32_t row) {
        const std::size_t first = static_cast<std::size_t>(row) % 2 * valuesPerVertex;
        return {values_.At(first), values_.At(first + 1), values_.At(first + 2),
                values_.At(first + 3), values_.At(first + 4)};
    }

private:
    static constexpr std::size_t valuesPerVertex = 5;
    PaddedRows<float> values_;
};

PaddedRows<float> ColumnPositions(const Surface& surface) {
    PaddedRows<float> positions(1, surface.cols);
    for (std::int32_t col = -rowPadding; col < surface.cols + rowPadding; ++col) {
        positions.At(0)[col] = static_cast<float>(col) * surface.spacing;
    }
    return positions;
}

/// No square reaches cells that are more rows away. A normal that underflows can be a little
/// longer than 1, and positions are rounded: hence the margins.
std::int32_t ReachInRows(const Surface& surface, const SurfaceMove& move) {
    const double sideways = (1.5 * std::abs(static_cast<double>(move.lateral)) + 1e-44) *
                            std::abs(static_cast<double>(move.distance));
    const double reach = 1.01 * (sideways + 1e-44) / static_cast<double>(surface.spacing) +
                         0.01 * static_cast<double>(surface.rows) + 4.0;
    return reach < static_cast<double>(surface.rows) ? static_cast<std::int32_t>(reach)
                                                     : surface.rows;
}

/// The kernels' bounds for rounding errors hold where no square of the pitch leaves the range of
/// normal numbers.
void SetGentleLimits(RasterBand& band) {
    if (band.spacing > 1e-6f && band.spacing < 1e6f) {
        band.nearOrigin = 8192.0f * band.spacing;
        band.gentleRise = 4.0f * band.spacing;
    }
}

/// Without a lateral share a normal adds nothing, if it is a number: heights and spacings like
/// these can not make its length overflow.
bool IsStraight(const Surface& surface, float distance, float lateral) {
    return lateral == 0.0f && std::isfinite(distance) && surface.spacing <= 1e6f &&
           ZELMO_PICK_LANES(AreWithin)(surface.heights.data(), surface.heights.size(), 1e9f);
}

/// Scans all triangles of the moved surface onto the rows `firstRow` to `endRow` - 1 of `out`,
/// with rows of moved vertices for two rows at a time.
void ScanRows(const Surface& surface, const SurfaceMove& move, std::span<float> out,
              std::int32_t firstRow, std::int32_t endRow) {
    const std::int32_t reach = ReachInRows(surface, move);
    const std::int32_t firstSquare = std::max(0, firstRow - reach);
    const std::int32_t endSquare = std::min(surface.rows - 1, endRow - 1 + reach);
    PaddedRows<float> raster(static_cast<std::size_t>(endRow - firstRow), surface.cols);
    const PaddedRows<float> positions = ColumnPositions(surface);
    RasterBand band;
    band.heights = raster.At(0);
    band.stride = raster.Stride();
    band.firstRow = firstRow;
    band.endRow = endRow;
    band.cols = surface.cols;
    band.rows = surface.rows;
    band.spacing = surface.spacing;
    band.colX = positions.At(0);
    SetGentleLimits(band);
    const auto scanSquares = 0.0f > move.distance ? ZELMO_PICK_LANES(ScanSquaresLowest)
                                                  : ZELMO_PICK_LANES(ScanSquaresHighest);

    SurfaceWindow window(surface);
    MovedRows moved(surface.cols);
    const auto moveRow = [&](std::int32_t row) {
        const VertexRow vertices = moved.At(row);
        ZELMO_PICK_LANES(MoveVerticesOfRow)(vertices, window.At(row), move);
        return vertices;
    };
    VertexRow lower = moveRow(firstSquare);
    for (std::int32_t row = firstSquare; row < endSquare; ++row) {
        EndIfStopped();
        const VertexRow upper = moveRow(row + 1);
        scanSquares(band, {lower, upper, row});
        lower = upper;
    }
    for (std::int32_t row = firstRow; row < endRow; ++row) {
        std::copy_n(raster.At(static_cast<std::size_t>(row - firstRow)), surface.cols,
                    out.begin() + static_cast<std::ptrdiff_t>(surface.RowStart(row)));
    }
}

}  // namespace

void OffsetSurface(const Grid& grid, std::span<float> out, std::span<const float> heights,
                   float distance, float lateral) {
    const Surface surface{heights, grid.columns, grid.rows, grid.spacing};
    const SurfaceMove move{distance, lateral, IsStraight(surface, distance, lateral)};
    constexpr std::int32_t smallestBand = 4;
    ForRowBands(surface.rows, smallestBand, [&](std::int32_t firstRow, std::int32_t endRow) {
        ScanRows(surface, move, out, firstRow, endRow);
    });
    FillMissingCells(surface.cols, surface.rows, surface.spacing, out);
}

void ComputeVertexNormals(std::int32_t cols, std::int32_t rows, float spacing,
                          std::span<float> normals, std::span<const float> heights) {
    const Surface surface{heights, cols, rows, spacing};
    SurfaceWindow window(surface);
    PaddedRows<float> coordinates(3, cols);
    float* const x = coordinates.At(0);
    float* const y = coordinates.At(1);
    float* const z = coordinates.At(2);
    for (std::int32_t row = 0; row < rows; ++row) {
        ZELMO_PICK_LANES(ComputeNormalsOfRow)({x, y, z}, window.At(row));
        float* normal = normals.data() + 3 * surface.RowStart(row);
        for (std::int32_t col = 0; col < cols; ++col, normal += 3) {
            normal[0] = x[col];
            normal[1] = y[col];
            normal[2] = z[col];
        }
    }
}

}  // namespace zelmo
