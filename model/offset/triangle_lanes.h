#pragma once

#include <cstdint>

#include "base/lane_code.h"
#include "base/vector_lanes.h"
#include "model/offset/offset_raster_lanes.h"

// For files of lane kernels only: the triangles of a block of neighbouring squares, one square in
// each lane, and the test of a cell against a triangle. The order of the sums and products is part
// of the results.

namespace zelmo::ZELMO_LANES {

constexpr std::int32_t lanes = laneCount<FloatLanes>;

/// How far outside a triangle a cell may lie and still take its height, in barycentric units.
constexpr float insideLow = -0.001f;
constexpr float insideHigh = 1.001f;

inline IntLanes IsWithin(const FloatLanes& values, float limit) {
    return (values <= limit) & (values >= -limit);
}

/// Triangles with what their tests have in common.
struct TriangleLanes {
    VectorLanes a;
    VectorLanes e0;  ///< from a to c
    VectorLanes e1;  ///< from a to b
    VectorLanes normal;
    FloatLanes planeAtOrigin;
    FloatLanes d00;
    FloatLanes d01;
    FloatLanes d11;
    FloatLanes inverse;
};

/// What the test has in common along a row of cells.
struct RowTerms {
    FloatLanes plane;
    FloatLanes e0;
    FloatLanes e1;
};

struct TouchLanes {
    FloatLanes height;  ///< of the triangle's plane at the cell
    IntLanes inside;    ///< whether the cell lies in the triangle
};

/// The corners of squares.
struct SquareLanes {
    VectorLanes a;    ///< lower left
    VectorLanes b;    ///< lower right
    VectorLanes c;    ///< upper left
    VectorLanes d;    ///< upper right
    IntLanes exists;  ///< behind a row's last square there are none
};

inline VectorLanes LoadVertices(const VertexRow& row, std::int32_t col) {
    return {LoadLanes<FloatLanes>(row.x + col), LoadLanes<FloatLanes>(row.y + col),
            LoadLanes<FloatLanes>(row.z + col)};
}

/// The squares from a column on.
inline SquareLanes LoadSquares(const RasterBand& band, const SquareRow& row, std::int32_t col) {
    return {LoadVertices(row.lower, col), LoadVertices(row.lower, col + 1),
            LoadVertices(row.upper, col), LoadVertices(row.upper, col + 1),
            CountingLanes<IntLanes>() < band.cols - 1 - col};
}

inline TriangleLanes MakeTriangles(const VectorLanes& a, const VectorLanes& b,
                                   const VectorLanes& c) {
    const VectorLanes e0 = Difference(c, a);
    const VectorLanes e1 = Difference(b, a);
    const VectorLanes normal = Cross(e1, e0);
    const FloatLanes d00 = Dot(e0, e0);
    const FloatLanes d01 = Dot(e0, e1);
    const FloatLanes d11 = Dot(e1, e1);
    return {a,
            e0,
            e1,
            normal,
            a.y * normal.y + a.x * normal.x + a.z * normal.z,
            d00,
            d01,
            d11,
            1.0f / (d11 * d00 - d01 * d01)};
}

/// The lower left triangles of squares, which come first.
inline TriangleLanes FirstTriangles(const SquareLanes& squares) {
    return MakeTriangles(squares.a, squares.b, squares.c);
}

inline TriangleLanes SecondTriangles(const SquareLanes& squares) {
    return MakeTriangles(squares.b, squares.d, squares.c);
}

/// Whether a triangle lies near enough to the origin and is not too steep for the bounds of
/// rounding errors that are made use of.
inline IntLanes IsGentle(const RasterBand& band, const TriangleLanes& t) {
    return IsWithin(t.a.x, band.nearOrigin) & IsWithin(t.a.y, band.nearOrigin) &
           IsWithin(t.a.z, band.nearOrigin) & IsWithin(t.e0.z, band.gentleRise) &
           IsWithin(t.e1.z, band.gentleRise);
}

inline RowTerms TermsOfRow(const TriangleLanes& t, float y) {
    const FloatLanes toY = y - t.a.y;
    return {y * t.normal.y, t.e0.y * toY, t.e1.y * toY};
}

inline IntLanes IsInside(const TriangleLanes& t, const FloatLanes& d02, const FloatLanes& d12) {
    const FloatLanes u = (t.d11 * d02 - d12 * t.d01) * t.inverse;
    const FloatLanes v = (d12 * t.d00 - d02 * t.d01) * t.inverse;
    // Triangles seen edge-on give NaN here and drop out.
    return (u >= insideLow) & (v >= insideLow) & (insideHigh >= u + v);
}

/// Tests the cells at `x` in a row.
inline TouchLanes Touch(const TriangleLanes& t, const RowTerms& row, const FloatLanes& x) {
    const FloatLanes z = (t.planeAtOrigin - x * t.normal.x - row.plane) / t.normal.z;
    const FloatLanes toX = x - t.a.x;
    const FloatLanes toZ = z - t.a.z;
    const FloatLanes d02 = t.e0.x * toX + row.e0 + t.e0.z * toZ;
    const FloatLanes d12 = t.e1.x * toX + row.e1 + t.e1.z * toZ;
    return {z, IsInside(t, d02, d12)};
}

/// What the cells hold after the triangle.
template <bool lowestWins>
FloatLanes Keep(const FloatLanes& cells, const TouchLanes& touch) {
    const IntLanes wins = lowestWins ? cells > touch.height : touch.height > cells;
    return (touch.inside & (wins | (cells == 0.0f))) ? touch.height : cells;
}

inline float* CellOf(const RasterBand& band, std::int32_t col, std::int32_t row) {
    return band.heights + (row - band.firstRow) * band.stride + col;
}

/// The same in the raster, for some of the triangles.
template <bool lowestWins>
void KeepIn(float* cells, const IntLanes& chosen, TouchLanes touch) {
    touch.inside &= chosen;
    StoreLanes(cells, Keep<lowestWins>(LoadLanes<FloatLanes>(cells), touch));
}

}  // namespace zelmo::ZELMO_LANES
