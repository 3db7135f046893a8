#include "model/offset_raster_lanes.h"

#include <cstddef>
#include <cstdint>
#include <utility>

#include "model/lanes.h"
#include "model/still_squares.h"
#include "model/triangle_lanes.h"

// A triangle is tested against every cell of its box. There are three ways of doing that in lanes,
// for a block of neighbouring squares at a time, and all keep the order in which a cell meets the
// triangles, because a height of exactly 0.0 makes a cell forget what it had:
//   - Squares that stayed in place and are not steep (model/still_squares.h).
//   - Else, where the boxes lie alike: one lane is one square, and all squares are tested against
//     the cell at the same place relative to each, place by place, from right to left.
//   - Else one lane is one cell of a row, triangle by triangle.

namespace zelmo::ZELMO_LANES {

namespace {

/// Ranges of columns and rows, the last ones included.
template <typename Number>
struct Box {
    Number minCol;
    Number maxCol;
    Number minRow;
    Number maxRow;
};

/// A block of squares that may have moved anywhere, with its triangles and their boxes.
struct MovedBlock {
    std::int32_t firstCol;
    TriangleLanes first;
    TriangleLanes second;
    Box<IntLanes> firstBox;
    Box<IntLanes> secondBox;
};

/// The horizontal position of a corner in cells.
struct CornerCells {
    FloatLanes col;
    FloatLanes row;
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

IntLanes Smaller(const IntLanes& a, const IntLanes& b) {
    return a < b ? a : b;
}

IntLanes Larger(const IntLanes& a, const IntLanes& b) {
    return a > b ? a : b;
}

/// The lanes, each `distance` lanes from its place.
template <std::int32_t distance, std::size_t... lane>
IntLanes Turned(const IntLanes& values, std::index_sequence<lane...>) {
    return __builtin_shufflevector(values, values, static_cast<int>((lane + distance) % lanes)...);
}

template <std::int32_t distance = lanes / 2>
std::int32_t SmallestLane(const IntLanes& values) {
    if constexpr (distance == 0) {
        return values[0];
    } else {
        return SmallestLane<distance / 2>(
            Smaller(values, Turned<distance>(values, std::make_index_sequence<lanes>())));
    }
}

std::int32_t LargestLane(const IntLanes& values) {
    return -SmallestLane(-values);
}

std::int32_t SumOfLanes(const IntLanes& values) {
    std::int32_t sum = 0;
    for (std::int32_t i = 0; i < lanes; ++i) {
        sum += values[i];
    }
    return sum;
}

/// The whole cells in positions, from `low` to `high`. Numbers that TruncateToI32 has no cell for
/// count as `low`, those that are too large for it as well.
IntLanes CellsWithin(const FloatLanes& positions, float low, float high) {
    const FloatLanes fitting = ((positions >= low) & (positions < 2147483648.0f))
                                   ? positions
                                   : EqualLanes<FloatLanes>(low);
    return __builtin_convertvector(fitting < high ? fitting : EqualLanes<FloatLanes>(high),
                                   IntLanes);
}

/// The range of cells that triangles between these positions, in cells, can touch: up to a cell
/// beyond them, or where they are regular to a quarter of a cell.
void SetRange(IntLanes& first, IntLanes& last, const FloatLanes& smallest,
              const FloatLanes& largest, const IntLanes& isRegular, std::int32_t count) {
    const FloatLanes none{};
    const float end = static_cast<float>(count);
    first = CellsWithin(smallest + (isRegular ? none + 0.75f : none), 0.0f, end);
    last = CellsWithin(largest + (isRegular ? none + 0.25f : none), -2.0f, end) + 1 + isRegular;
}

/// The band's cells that a triangle can touch.
Box<IntLanes> BoxOf(const RasterBand& band, const IntLanes& exists, const IntLanes& isRegular,
                    const CornerCells& a, const CornerCells& b, const CornerCells& c) {
    Box<IntLanes> box;
    SetRange(box.minCol, box.maxCol, Smallest(a.col, b.col, c.col), Largest(a.col, b.col, c.col),
             isRegular, band.cols);
    SetRange(box.minRow, box.maxRow, Smallest(a.row, b.row, c.row), Largest(a.row, b.row, c.row),
             isRegular, band.rows);
    box.maxCol = exists ? Smaller(box.maxCol, EqualLanes<IntLanes>(band.cols - 1))
                        : EqualLanes<IntLanes>(-1);
    box.minRow = Larger(box.minRow, EqualLanes<IntLanes>(band.firstRow));
    box.maxRow = Smaller(box.maxRow, EqualLanes<IntLanes>(band.endRow - 1));
    return box;
}

/// Whether an edge is an eighth of a pitch or less from this many pitches.
IntLanes IsNearly(const RasterBand& band, const VectorLanes& edge, float cols, float rows) {
    const float pitch = band.spacing;
    return IsWithin(edge.x - cols * pitch, 0.125f * pitch) &
           IsWithin(edge.y - rows * pitch, 0.125f * pitch);
}

/// Regular triangles are gentle and nearly as large as they were without the move. As roundings
/// make up less than 0.1 in barycentric units, cells are outside that are a quarter of a cell or
/// more beyond all corners.
IntLanes AreRegular(const RasterBand& band, const TriangleLanes& t, bool isFirst) {
    return IsGentle(band, t) & IsNearly(band, t.e0, isFirst ? 0.0f : -1.0f, 1.0f) &
           IsNearly(band, t.e1, isFirst ? 1.0f : 0.0f, isFirst ? 0.0f : 1.0f);
}

CornerCells LoadCells(const VertexRow& row, std::int32_t col) {
    return {LoadLanes<FloatLanes>(row.col + col), LoadLanes<FloatLanes>(row.row + col)};
}

MovedBlock MakeBlock(const RasterBand& band, const SquareRow& row, std::int32_t col) {
    const SquareLanes squares = LoadSquares(band, row, col);
    const TriangleLanes first = FirstTriangles(squares);
    const TriangleLanes second = SecondTriangles(squares);
    const CornerCells a = LoadCells(row.lower, col);
    const CornerCells b = LoadCells(row.lower, col + 1);
    const CornerCells c = LoadCells(row.upper, col);
    const CornerCells d = LoadCells(row.upper, col + 1);
    return {col, first, second, BoxOf(band, squares.exists, AreRegular(band, first, true), a, b, c),
            BoxOf(band, squares.exists, AreRegular(band, second, false), b, d, c)};
}

/// Places relative to each square's lower left corner; rows are those of the grid.
void Include(Box<IntLanes>& places, const Box<IntLanes>& box, const IntLanes& squares) {
    const IntLanes any = (box.minCol <= box.maxCol) & (box.minRow <= box.maxRow);
    places.minCol = any ? Smaller(places.minCol, box.minCol - squares) : places.minCol;
    places.maxCol = any ? Larger(places.maxCol, box.maxCol - squares) : places.maxCol;
    places.minRow = any ? Smaller(places.minRow, box.minRow) : places.minRow;
    places.maxRow = any ? Larger(places.maxRow, box.maxRow) : places.maxRow;
}

/// The places that the boxes of all squares cover together.
Box<std::int32_t> PlacesOf(const MovedBlock& block) {
    constexpr std::int32_t far = 1 << 30;
    const IntLanes squares = CountingLanes<IntLanes>() + block.firstCol;
    Box<IntLanes> places{IntLanes{} + far, IntLanes{} - far, IntLanes{} + far, IntLanes{} - far};
    Include(places, block.firstBox, squares);
    Include(places, block.secondBox, squares);
    return {SmallestLane(places.minCol), LargestLane(places.maxCol), SmallestLane(places.minRow),
            LargestLane(places.maxRow)};
}

IntLanes InBox(const Box<IntLanes>& box, const IntLanes& cols, const IntLanes& inRows) {
    return inRows & (cols >= box.minCol) & (cols <= box.maxCol);
}

/// One lane is one square.
template <bool lowestWins>
void ScanPlaces(const RasterBand& band, const MovedBlock& block, const Box<std::int32_t>& places) {
    for (std::int32_t row = places.minRow; row <= places.maxRow; ++row) {
        const float y = static_cast<float>(row) * band.spacing;
        const RowTerms firstTerms = TermsOfRow(block.first, y);
        const RowTerms secondTerms = TermsOfRow(block.second, y);
        const IntLanes inFirst = (block.firstBox.minRow <= row) & (block.firstBox.maxRow >= row);
        const IntLanes inSecond = (block.secondBox.minRow <= row) & (block.secondBox.maxRow >= row);
        for (std::int32_t place = places.maxCol; place >= places.minCol; --place) {
            const std::int32_t col = block.firstCol + place;
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

FloatLanes Spread(const FloatLanes& values, std::int32_t lane) {
    return EqualLanes<FloatLanes>(values[lane]);
}

VectorLanes Spread(const VectorLanes& vectors, std::int32_t lane) {
    return {Spread(vectors.x, lane), Spread(vectors.y, lane), Spread(vectors.z, lane)};
}

/// The triangle of one lane in all lanes.
TriangleLanes Spread(const TriangleLanes& t, std::int32_t lane) {
    return {Spread(t.a, lane),
            Spread(t.e0, lane),
            Spread(t.e1, lane),
            Spread(t.normal, lane),
            Spread(t.planeAtOrigin, lane),
            Spread(t.d00, lane),
            Spread(t.d01, lane),
            Spread(t.d11, lane),
            Spread(t.inverse, lane)};
}

/// One lane is one cell of a row.
template <bool lowestWins>
void ScanTriangle(const RasterBand& band, const TriangleLanes& triangles,
                  const Box<IntLanes>& boxes, std::int32_t lane) {
    const std::int32_t maxCol = boxes.maxCol[lane];
    if (boxes.minCol[lane] > maxCol) {
        return;
    }
    const TriangleLanes t = Spread(triangles, lane);
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

/// How many lanes of cells ScanTriangle tests for all triangles.
std::int32_t StepsByTriangle(const Box<IntLanes>& box) {
    const IntLanes cols = Larger(box.maxCol - box.minCol + 1, IntLanes{});
    const IntLanes rows = Larger(box.maxRow - box.minRow + 1, IntLanes{});
    return SumOfLanes((cols + (lanes - 1)) / lanes * rows);
}

/// Scans the squares from a column on, wherever they are.
template <bool lowestWins>
[[gnu::noinline, gnu::flatten]] void ScanMovedSquares(const RasterBand& band, const SquareRow& row,
                                                      std::int32_t col) {
    const MovedBlock block = MakeBlock(band, row, col);
    const Box<std::int32_t> places = PlacesOf(block);
    if (places.maxRow < places.minRow) {
        return;
    }
    const std::int64_t steps =
        2LL * (places.maxCol - places.minCol + 1) * (places.maxRow - places.minRow + 1);
    constexpr std::int64_t fewSteps = 2LL * 4 * 4;
    if (steps <= fewSteps ||
        steps <= StepsByTriangle(block.firstBox) + StepsByTriangle(block.secondBox)) {
        ScanPlaces<lowestWins>(band, block, places);
        return;
    }
    for (std::int32_t lane = 0; lane < lanes; ++lane) {
        ScanTriangle<lowestWins>(band, block.first, block.firstBox, lane);
        ScanTriangle<lowestWins>(band, block.second, block.secondBox, lane);
    }
}

template <bool lowestWins>
void ScanSquares(const RasterBand& band, const SquareRow& row) {
    for (std::int32_t col = 0; col < band.cols - 1; col += lanes) {
        if (!ScanStillSquares<lowestWins>(band, row, col)) {
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
