#pragma once

#include <cstdint>

#include "base/lane_code.h"
#include "model/offset/triangle_lanes.h"

// For files of lane kernels only: squares that stayed in place, which is most of a surface. Their
// triangles can touch nothing but the cells at their corners, where many terms of the test vanish
// or are the same.
//
// Why no other cell: with the corners in place every other cell is off by one or more in one of the
// barycentric units u, v and 1 - u - v. The terms of the test are no larger than positions times
// slopes; within the limits of IsGentle their roundings make up less than 0.1.

namespace zelmo::ZELMO_LANES {

/// Where a block of squares has its corners, if they stayed in place.
struct StillCorners {
    FloatLanes left;
    FloatLanes right;
    float lower;
    float upper;
};

inline IntLanes IsAt(const VectorLanes& corner, const FloatLanes& x, float y) {
    return (corner.x == x) & (corner.y == y);
}

inline bool AreInPlace(const SquareLanes& squares, const StillCorners& at) {
    return AllLanes(~squares.exists |
                    (IsAt(squares.a, at.left, at.lower) & IsAt(squares.b, at.right, at.lower) &
                     IsAt(squares.c, at.left, at.upper) & IsAt(squares.d, at.right, at.upper)));
}

/// Touch, for a cell that is a corner: the products of its way from `t.a` with `t.e0` and `t.e1`
/// are known but for the heights.
inline TouchLanes TouchCorner(const TriangleLanes& t, const FloatLanes& x, float y,
                              const FloatLanes& flatD02, const FloatLanes& flatD12) {
    const FloatLanes z = (t.planeAtOrigin - x * t.normal.x - y * t.normal.y) / t.normal.z;
    const FloatLanes toZ = z - t.a.z;
    return {z, IsInside(t, flatD02 + t.e0.z * toZ, flatD12 + t.e1.z * toZ)};
}

/// Scans the squares from a column on, if all stayed in place and are gentle.
template <bool lowestWins>
bool ScanIfStill(const RasterBand& band, const SquareRow& row, std::int32_t col) {
    const StillCorners at{
        LoadLanes<FloatLanes>(band.colX + col), LoadLanes<FloatLanes>(band.colX + col + 1),
        static_cast<float>(row.row) * band.spacing, static_cast<float>(row.row + 1) * band.spacing};
    const SquareLanes squares = LoadSquares(band, row, col);
    if (!AreInPlace(squares, at)) {
        return false;
    }
    const TriangleLanes first = FirstTriangles(squares);
    const TriangleLanes second = SecondTriangles(squares);
    const IntLanes exists = squares.exists;
    if (!AllLanes(~exists | (IsGentle(band, first) & IsGentle(band, second)))) {
        return false;
    }
    const FloatLanes none{};
    const FloatLanes width2 = first.e1.x * first.e1.x;
    const FloatLanes depth2 = first.e0.y * first.e0.y;
    // In each row the cells on the right come first: they are those of the squares on the left.
    if (row.row >= band.firstRow && row.row < band.endRow) {
        float* cells = CellOf(band, col, row.row);
        KeepIn<lowestWins>(cells + 1, exists, TouchCorner(first, at.right, at.lower, none, width2));
        KeepIn<lowestWins>(cells + 1, exists, TouchCorner(second, at.right, at.lower, none, none));
        KeepIn<lowestWins>(cells, exists, TouchCorner(first, at.left, at.lower, none, none));
    }
    if (row.row + 1 >= band.firstRow && row.row + 1 < band.endRow) {
        float* cells = CellOf(band, col, row.row + 1);
        KeepIn<lowestWins>(cells + 1, exists,
                           TouchCorner(second, at.right, at.upper, depth2, depth2));
        KeepIn<lowestWins>(cells, exists, TouchCorner(first, at.left, at.upper, depth2, none));
        KeepIn<lowestWins>(cells, exists,
                           TouchCorner(second, at.left, at.upper, width2 + depth2, depth2));
    }
    return true;
}

}  // namespace zelmo::ZELMO_LANES
