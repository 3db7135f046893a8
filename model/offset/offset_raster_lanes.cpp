#include "model/offset/offset_raster_lanes.h"

#include <cstdint>

#include "base/lane_code.h"
#include "model/offset/regular_squares.h"
#include "model/offset/still_squares.h"
#include "model/offset/triangle_lanes.h"

// A triangle is tested against every cell of its box. Lanes do that for a block of neighbouring
// squares at a time, in one of these ways:
//   - squares that stayed in place and are not steep (model/offset/still_squares.h);
//   - squares that moved and are still much the same (model/offset/regular_squares.h);
//   - others whose boxes lie alike: one lane is one square, and all squares are tested against the
//     cell that is the same shift away from each, shift by shift;
//   - else square by square, and one lane is one cell of a row.
// All keep the order in which a cell meets the triangles, because a height of exactly 0.0 makes a
// cell forget what it had.

namespace zelmo::ZELMO_LANES {

namespace {

/// A block of squares that may have moved anywhere, with its triangles and their boxes.
struct MovedBlock {
    std::int32_t firstCol;
    TriangleLanes first;
    TriangleLanes second;
    Box<IntLanes> firstBox;
    Box<IntLanes> secondBox;
    IntLanes isRegular;
};

// NaN: skipped, unless it is the first.
FloatLanes Smallest(const FloatLanes& a, const FloatLanes& b, const FloatLanes& c) {
    const FloatLanes ab = b < a ? b : a;
    return c < ab ? c : ab;
}

FloatLanes Largest(const FloatLanes& a, const FloatLanes& b, const FloatLanes& c) {
    const FloatLanes ab = b > a ? b : a;
    return c > ab ? c : ab;
}

std::int32_t SumOfLanes(const IntLanes& values) {
    std::int32_t sum = 0;
    for (std::int32_t i = 0; i < lanes; ++i) {
        sum += values[i];
    }
    return sum;
}

/// The range of cells that triangles between these positions, in cells, can touch.
void SetRange(IntLanes& first, IntLanes& last, const FloatLanes& smallest,
              const FloatLanes& largest, std::int32_t count) {
    first = CellsWithin(smallest, 0.0f, static_cast<float>(count));
    last = CellsWithin(largest, -2.0f, static_cast<float>(count)) + 1;
}

/// The band's cells that a triangle can touch.
Box<IntLanes> BoxOf(const RasterBand& band, const IntLanes& exists, const CornerCells& a,
                    const CornerCells& b, const CornerCells& c) {
    Box<IntLanes> box{};
    SetRange(box.minCol, box.maxCol, Smallest(a.col, b.col, c.col), Largest(a.col, b.col, c.col),
             band.cols);
    SetRange(box.minRow, box.maxRow, Smallest(a.row, b.row, c.row), Largest(a.row, b.row, c.row),
             band.rows);
    box.maxCol =
        exists ? Smaller(box.maxCol, Broadcast<IntLanes>(band.cols - 1)) : Broadcast<IntLanes>(-1);
    box.minRow = Larger(box.minRow, Broadcast<IntLanes>(band.firstRow));
    box.maxRow = Smaller(box.maxRow, Broadcast<IntLanes>(band.endRow - 1));
    return box;
}

MovedBlock MakeBlock(const RasterBand& band, const SquareRow& row, std::int32_t col) {
    const SquareLanes squares = LoadSquares(band, row, col);
    const TriangleLanes first = FirstTriangles(squares);
    const TriangleLanes second = SecondTriangles(squares);
    const CornerCells a = LoadCells(row.lower, col);
    const CornerCells b = LoadCells(row.lower, col + 1);
    const CornerCells c = LoadCells(row.upper, col);
    const CornerCells d = LoadCells(row.upper, col + 1);
    return {col,
            first,
            second,
            BoxOf(band, squares.exists, a, b, c),
            BoxOf(band, squares.exists, b, d, c),
            squares.exists & AreRegular(band, first, second)};
}

/// Takes a box into `shifts`: columns from each square's lower left corner on, rows of the grid.
void Include(Box<IntLanes>& shifts, const Box<IntLanes>& box, const IntLanes& squares) {
    const IntLanes any = (box.minCol <= box.maxCol) & (box.minRow <= box.maxRow);
    shifts.minCol = any ? Smaller(shifts.minCol, box.minCol - squares) : shifts.minCol;
    shifts.maxCol = any ? Larger(shifts.maxCol, box.maxCol - squares) : shifts.maxCol;
    shifts.minRow = any ? Smaller(shifts.minRow, box.minRow) : shifts.minRow;
    shifts.maxRow = any ? Larger(shifts.maxRow, box.maxRow) : shifts.maxRow;
}

/// The shifts at which any square has its boxes.
Box<std::int32_t> ShiftsOf(const MovedBlock& block) {
    constexpr std::int32_t far = 1 << 30;
    const IntLanes squares = CountingLanes<IntLanes>() + block.firstCol;
    Box<IntLanes> shifts{IntLanes{} + far, IntLanes{} - far, IntLanes{} + far, IntLanes{} - far};
    Include(shifts, block.firstBox, squares);
    Include(shifts, block.secondBox, squares);
    return {SmallestLane(shifts.minCol), LargestLane(shifts.maxCol), SmallestLane(shifts.minRow),
            LargestLane(shifts.maxRow)};
}

IntLanes InBox(const Box<IntLanes>& box, const IntLanes& cols, const IntLanes& inRows) {
    return inRows & (cols >= box.minCol) & (cols <= box.maxCol);
}

/// One lane is one square.
template <bool lowestWins>
void ScanShifts(const RasterBand& band, const MovedBlock& block, const Box<std::int32_t>& shifts) {
    for (std::int32_t row = shifts.minRow; row <= shifts.maxRow; ++row) {
        const float y = static_cast<float>(row) * band.spacing;
        const RowTerms firstTerms = TermsOfRow(block.first, y);
        const RowTerms secondTerms = TermsOfRow(block.second, y);
        const IntLanes inFirst = (block.firstBox.minRow <= row) & (block.firstBox.maxRow >= row);
        const IntLanes inSecond = (block.secondBox.minRow <= row) & (block.secondBox.maxRow >= row);
        for (std::int32_t shift = shifts.maxCol; shift >= shifts.minCol; --shift) {
            const std::int32_t col = block.firstCol + shift;
            const IntLanes cols = CountingLanes<IntLanes>() + col;
            const FloatLanes x = LoadLanes<FloatLanes>(band.colX + col);
            TouchLanes first = Touch(block.first, firstTerms, x);
            TouchLanes second = Touch(block.second, secondTerms, x);
            first.inside &= InBox(block.firstBox, cols, inFirst);
            second.inside &= InBox(block.secondBox, cols, inSecond);
            if (AnyLane(first.inside | second.inside)) {
                float* cells = CellOf(band, col, row);
                const FloatLanes before = LoadLanes<FloatLanes>(cells);
                StoreLanes(cells, Keep<lowestWins>(Keep<lowestWins>(before, first), second));
            }
        }
    }
}

FloatLanes BroadcastLane(const FloatLanes& values, std::int32_t lane) {
    return Broadcast<FloatLanes>(values[lane]);
}

VectorLanes BroadcastLane(const VectorLanes& vectors, std::int32_t lane) {
    return {BroadcastLane(vectors.x, lane), BroadcastLane(vectors.y, lane),
            BroadcastLane(vectors.z, lane)};
}

/// The triangle of one lane in all lanes.
TriangleLanes BroadcastLane(const TriangleLanes& t, std::int32_t lane) {
    return {BroadcastLane(t.a, lane),
            BroadcastLane(t.e0, lane),
            BroadcastLane(t.e1, lane),
            BroadcastLane(t.normal, lane),
            BroadcastLane(t.planeAtOrigin, lane),
            BroadcastLane(t.d00, lane),
            BroadcastLane(t.d01, lane),
            BroadcastLane(t.d11, lane),
            BroadcastLane(t.inverse, lane)};
}

/// One lane is one cell of a row.
template <bool lowestWins>
void ScanTriangle(const RasterBand& band, const TriangleLanes& triangles,
                  const Box<IntLanes>& boxes, std::int32_t lane) {
    const std::int32_t maxCol = boxes.maxCol[lane];
    if (boxes.minCol[lane] > maxCol) {
        return;
    }
    const TriangleLanes t = BroadcastLane(triangles, lane);
    for (std::int32_t row = boxes.minRow[lane]; row <= boxes.maxRow[lane]; ++row) {
        const RowTerms terms = TermsOfRow(t, static_cast<float>(row) * band.spacing);
        for (std::int32_t col = boxes.minCol[lane]; col <= maxCol; col += lanes) {
            TouchLanes touch = Touch(t, terms, LoadLanes<FloatLanes>(band.colX + col));
            touch.inside &= CountingLanes<IntLanes>() + col <= maxCol;
            if (AnyLane(touch.inside)) {
                float* cells = CellOf(band, col, row);
                StoreLanes(cells, Keep<lowestWins>(LoadLanes<FloatLanes>(cells), touch));
            }
        }
    }
}

/// One square after the other; regular ones that stand side by side go together.
template <bool lowestWins>
void ScanOneByOne(const RasterBand& band, const SquareRow& row, const MovedBlock& block) {
    const IntLanes numbers = CountingLanes<IntLanes>();
    for (std::int32_t lane = 0; lane < lanes;) {
        std::int32_t end = lane;
        while (end < lanes && block.isRegular[end] != 0) {
            ++end;
        }
        if (end > lane) {
            ScanRegularSquares<lowestWins>(band, row, block.firstCol, block.first, block.second,
                                           (numbers >= lane) & (numbers < end));
            lane = end;
            continue;
        }
        ScanTriangle<lowestWins>(band, block.first, block.firstBox, lane);
        ScanTriangle<lowestWins>(band, block.second, block.secondBox, lane);
        ++lane;
    }
}

/// How many lanes of cells ScanTriangle tests for the triangles that are not regular.
std::int32_t StepsByTriangle(const Box<IntLanes>& box, const IntLanes& isRegular) {
    const IntLanes cols = Larger(box.maxCol - box.minCol + 1, IntLanes{});
    const IntLanes rows = Larger(box.maxRow - box.minRow + 1, IntLanes{});
    return SumOfLanes(~isRegular & ((cols + (lanes - 1)) / lanes * rows));
}

/// Scans the squares from a column on, wherever they are.
template <bool lowestWins>
[[gnu::noinline, gnu::flatten]] void ScanMovedSquares(const RasterBand& band, const SquareRow& row,
                                                      std::int32_t col) {
    const MovedBlock block = MakeBlock(band, row, col);
    const Box<std::int32_t> shifts = ShiftsOf(block);
    if (shifts.maxRow < shifts.minRow) {
        return;
    }
    const std::int64_t steps =
        2LL * (shifts.maxCol - shifts.minCol + 1) * (shifts.maxRow - shifts.minRow + 1);
    constexpr std::int64_t fewSteps = 2LL * 4 * 4;
    if (steps <= fewSteps + StepsByTriangle(block.firstBox, block.isRegular) +
                     StepsByTriangle(block.secondBox, block.isRegular)) {
        ScanShifts<lowestWins>(band, block, shifts);
    } else {
        ScanOneByOne<lowestWins>(band, row, block);
    }
}

/// Whether any of the squares from a column on can touch rows of the band.
bool MeetsBand(const RasterBand& band, const SquareRow& row, std::int32_t col) {
    const auto first = static_cast<float>(band.firstRow - 2);
    const auto last = static_cast<float>(band.endRow + 1);
    const FloatLanes a = LoadLanes<FloatLanes>(row.lower.row + col);
    const FloatLanes b = LoadLanes<FloatLanes>(row.lower.row + col + 1);
    const FloatLanes c = LoadLanes<FloatLanes>(row.upper.row + col);
    const FloatLanes d = LoadLanes<FloatLanes>(row.upper.row + col + 1);
    return AnyLane(((a >= first) | (b >= first) | (c >= first) | (d >= first)) &
                   ((a <= last) | (b <= last) | (c <= last) | (d <= last)));
}

template <bool lowestWins>
void ScanSquares(const RasterBand& band, const SquareRow& row) {
    // Squares can have moved to the band from rows beyond it, but most have not.
    const bool isBeyond = row.row + 1 < band.firstRow || row.row >= band.endRow;
    for (std::int32_t col = 0; col < band.cols - 1; col += lanes) {
        if (isBeyond && !MeetsBand(band, row, col)) {
            continue;
        }
        if (!ScanIfStill<lowestWins>(band, row, col) &&
            !ScanIfRegular<lowestWins>(band, row, col)) {
            ScanMovedSquares<lowestWins>(band, row, col);
        }
    }
}

}  // namespace

[[gnu::flatten]] void ScanSquaresLowest(const RasterBand& band, const SquareRow& squares) {
    ScanSquares<true>(band, squares);
}

[[gnu::flatten]] void ScanSquaresHighest(const RasterBand& band, const SquareRow& squares) {
    ScanSquares<false>(band, squares);
}

}  // namespace zelmo::ZELMO_LANES
