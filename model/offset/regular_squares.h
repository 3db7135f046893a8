#pragma once

#include <cstdint>

#include "base/lane_code.h"
#include "model/offset/cell_lanes.h"
#include "model/offset/triangle_lanes.h"

// For files of lane kernels only: squares that moved, but are gentle and nearly as large as before.
// One lane is one square, and all squares are tested against the cell that is the same shift away
// from each, shift by shift, from right to left.
//
// The shifts are those that lead any of the squares to within a quarter of a cell around its
// corners. No other cell can be touched: the roundings of the test make up less than 0.1 in
// barycentric units, and farther out one of the units is off by more. So the test alone decides,
// also where a shift leads outside a triangle's box.

namespace zelmo::ZELMO_LANES {

/// Whether an edge is an eighth of a pitch or less from this many pitches.
inline IntLanes IsNearly(const RasterBand& band, const VectorLanes& edge, float cols, float rows) {
    const float pitch = band.spacing;
    return IsWithin(edge.x - cols * pitch, 0.125f * pitch) &
           IsWithin(edge.y - rows * pitch, 0.125f * pitch);
}

inline IntLanes AreRegular(const RasterBand& band, const TriangleLanes& first,
                           const TriangleLanes& second) {
    return IsGentle(band, first) & IsGentle(band, second) & IsNearly(band, first.e0, 0.0f, 1.0f) &
           IsNearly(band, first.e1, 1.0f, 0.0f) & IsNearly(band, second.e0, -1.0f, 1.0f) &
           IsNearly(band, second.e1, 0.0f, 1.0f);
}

/// The shifts around some of the squares from a column on: columns from each square's own on, rows
/// of the grid.
inline Box<std::int32_t> ShiftsAround(const RasterBand& band, const SquareRow& row,
                                      std::int32_t col, const IntLanes& chosen) {
    const CornerCells a = LoadCells(row.lower, col);
    const CornerCells b = LoadCells(row.lower, col + 1);
    const CornerCells c = LoadCells(row.upper, col);
    const CornerCells d = LoadCells(row.upper, col + 1);
    const FloatLanes left = (a.col < c.col ? a.col : c.col) + 0.75f;
    const FloatLanes right = (b.col > d.col ? b.col : d.col) + 0.25f;
    const FloatLanes lower = (a.row < b.row ? a.row : b.row) + 0.75f;
    const FloatLanes upper = (c.row > d.row ? c.row : d.row) + 0.25f;
    constexpr std::int32_t far = 1 << 30;
    const IntLanes squares = CountingLanes<IntLanes>() + col;
    const auto cols = static_cast<float>(band.cols);
    const auto rows = static_cast<float>(band.rows);
    const IntLanes minCol = CellsWithin(left, 0.0f, cols) - squares;
    const IntLanes maxCol =
        Smaller(CellsWithin(right, -1.0f, cols), Broadcast<IntLanes>(band.cols - 1)) - squares;
    return {SmallestLane(chosen ? minCol : Broadcast<IntLanes>(far)),
            LargestLane(chosen ? maxCol : Broadcast<IntLanes>(-far)),
            SmallestLane(chosen ? CellsWithin(lower, 0.0f, rows) : Broadcast<IntLanes>(far)),
            LargestLane(chosen ? CellsWithin(upper, -1.0f, rows) : Broadcast<IntLanes>(-far))};
}

/// Scans some of the squares from a column on, all of them regular.
template <bool lowestWins>
void ScanRegularSquares(const RasterBand& band, const SquareRow& row, std::int32_t col,
                        const TriangleLanes& first, const TriangleLanes& second,
                        const IntLanes& chosen) {
    const Box<std::int32_t> shifts = ShiftsAround(band, row, col, chosen);
    const std::int32_t minRow = shifts.minRow > band.firstRow ? shifts.minRow : band.firstRow;
    const std::int32_t maxRow = shifts.maxRow < band.endRow - 1 ? shifts.maxRow : band.endRow - 1;
    for (std::int32_t cellRow = minRow; cellRow <= maxRow; ++cellRow) {
        const float y = static_cast<float>(cellRow) * band.spacing;
        const RowTerms firstTerms = TermsOfRow(first, y);
        const RowTerms secondTerms = TermsOfRow(second, y);
        for (std::int32_t shift = shifts.maxCol; shift >= shifts.minCol; --shift) {
            // Cells beyond the row's ends lie in its padding.
            float* cells = CellOf(band, col + shift, cellRow);
            const FloatLanes x = LoadLanes<FloatLanes>(band.colX + col + shift);
            KeepIn<lowestWins>(cells, chosen, Touch(first, firstTerms, x));
            KeepIn<lowestWins>(cells, chosen, Touch(second, secondTerms, x));
        }
    }
}

/// Scans the squares from a column on, if all are regular.
template <bool lowestWins>
bool ScanIfRegular(const RasterBand& band, const SquareRow& row, std::int32_t col) {
    const SquareLanes squares = LoadSquares(band, row, col);
    const TriangleLanes first = FirstTriangles(squares);
    const TriangleLanes second = SecondTriangles(squares);
    if (!AllLanes(~squares.exists | AreRegular(band, first, second))) {
        return false;
    }
    ScanRegularSquares<lowestWins>(band, row, col, first, second, squares.exists);
    return true;
}

}  // namespace zelmo::ZELMO_LANES
