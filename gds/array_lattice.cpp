#include "gds/array_lattice.h"

#include <algorithm>
#include <limits>
#include <stdexcept>

#include "base/conversions.h"
#include "gds/coordinates.h"

namespace zelmo {

namespace {

struct Position {
    double x = 0.0;
    double y = 0.0;
};

struct CoordinateRange {
    std::int64_t least = 0;
    std::int64_t greatest = 0;
};

Position PositionAt(const ArrayLattice& lattice, std::int32_t column, std::int32_t row) {
    const auto i = static_cast<double>(column);
    const auto j = static_cast<double>(row);
    return {lattice.rowStepX * j + (lattice.columnStepX * i + lattice.originX),
            lattice.rowStepY * j + (lattice.columnStepY * i + lattice.originY)};
}

std::int64_t ToCoordinate(double position, PositionRule rule) {
    return rule == PositionRule::Truncate64 ? TruncateToI64(position) : TruncateToI32(position);
}

/// Holds the coordinates of all positions between two.
CoordinateRange ToCoordinates(double least, double greatest, PositionRule rule) {
    constexpr double end = 0x1p31;
    const bool fits = least > -end - 1.0 && greatest < end;
    if (rule == PositionRule::Truncate64 || fits) {
        return {ToCoordinate(least, rule), ToCoordinate(greatest, rule)};
    }
    constexpr std::int64_t beyond = std::numeric_limits<std::int32_t>::min();
    return {beyond, least >= end ? beyond : TruncateToI32(std::min(greatest, end - 1.0))};
}

struct PositionBox {
    CoordinateRange x;
    CoordinateRange y;
};

PositionBox BlockPositions(const ArrayLattice& lattice, PositionRule rule,
                           const LatticeBlock& block) {
    const Position corners[] = {PositionAt(lattice, block.firstColumn, block.firstRow),
                                PositionAt(lattice, block.firstColumn, block.lastRow),
                                PositionAt(lattice, block.lastColumn, block.firstRow),
                                PositionAt(lattice, block.lastColumn, block.lastRow)};
    Position least = corners[0];
    Position greatest = corners[0];
    for (const Position corner : corners) {
        least = {std::min(least.x, corner.x), std::min(least.y, corner.y)};
        greatest = {std::max(greatest.x, corner.x), std::max(greatest.y, corner.y)};
    }
    return {ToCoordinates(least.x, greatest.x, rule), ToCoordinates(least.y, greatest.y, rule)};
}

std::int32_t Middle(std::int32_t first, std::int32_t last) {
    return first + (last - first) / 2;
}

bool Contains(const GdsRect& outer, const GdsRect& inner) {
    return outer.xmin <= inner.xmin && outer.ymin <= inner.ymin && outer.xmax >= inner.xmax &&
           outer.ymax >= inner.ymax;
}

}  // namespace

BlockHalves SplitColumns(const LatticeBlock& block) {
    BlockHalves halves{block, block};
    halves.first.lastColumn = Middle(block.firstColumn, block.lastColumn);
    halves.second.firstColumn = halves.first.lastColumn + 1;
    return halves;
}

BlockHalves SplitRows(const LatticeBlock& block) {
    BlockHalves halves{block, block};
    halves.first.lastRow = Middle(block.firstRow, block.lastRow);
    halves.second.firstRow = halves.first.lastRow + 1;
    return halves;
}

ArrayLattice LatticeOf(const GdsAref& aref) {
    if (aref.points.size() < 3) {
        throw std::out_of_range("invalid vector subscript");
    }
    const GdsPoint origin = aref.points[0];
    const auto pitch = [](std::int64_t end, std::int64_t start, std::int32_t count) {
        return static_cast<double>(SaturatingSubtract(end, start)) / static_cast<double>(count);
    };
    ArrayLattice lattice;
    lattice.originX = static_cast<double>(origin.x);
    lattice.originY = static_cast<double>(origin.y);
    lattice.columnStepX = pitch(aref.points[1].x, origin.x, aref.columns);
    lattice.columnStepY = pitch(aref.points[1].y, origin.y, aref.columns);
    lattice.rowStepX = pitch(aref.points[2].x, origin.x, aref.rows);
    lattice.rowStepY = pitch(aref.points[2].y, origin.y, aref.rows);
    return lattice;
}

LatticeBlock WholeBlock(const GdsAref& aref) {
    return {0, aref.columns - 1, 0, aref.rows - 1};
}

GdsPoint InstancePosition(const ArrayLattice& lattice, PositionRule rule, std::int32_t column,
                          std::int32_t row) {
    const Position position = PositionAt(lattice, column, row);
    return {ToCoordinate(position.x, rule), ToCoordinate(position.y, rule)};
}

GdsRect BlockOffsets(const ArrayLattice& lattice, PositionRule rule, const LatticeBlock& block,
                     const GdsTransform& parent, const LinearPart& linear) {
    const PositionBox positions = BlockPositions(lattice, rule, block);
    const GdsPoint first = PlacePoint({positions.x.least, positions.y.least}, parent, linear);
    GdsRect offsets{first.x, first.y, first.x, first.y};
    for (const GdsPoint corner : {GdsPoint{positions.x.least, positions.y.greatest},
                                  GdsPoint{positions.x.greatest, positions.y.least},
                                  GdsPoint{positions.x.greatest, positions.y.greatest}}) {
        const GdsPoint offset = PlacePoint(corner, parent, linear);
        MergeRect(offsets, {offset.x, offset.y, offset.x, offset.y});
    }
    return offsets;
}

/// A block is taken apart only where it could still widen the result, so that no more than a few of
/// its instances are looked at.
void WidenByOffsets(GdsRect& offsets, const ArrayLattice& lattice, const LatticeBlock& block,
                    const GdsTransform& parent, const LinearPart& linear) {
    for (const std::int32_t column : {block.firstColumn, block.lastColumn}) {
        for (const std::int32_t row : {block.firstRow, block.lastRow}) {
            const GdsPoint position =
                InstancePosition(lattice, PositionRule::Truncate64, column, row);
            WidenByPoint(offsets, PlacePoint(position, parent, linear));
        }
    }
    if (Contains(offsets, BlockOffsets(lattice, PositionRule::Truncate64, block, parent, linear))) {
        return;
    }
    const bool wide = block.lastColumn - block.firstColumn > block.lastRow - block.firstRow;
    const BlockHalves halves = wide ? SplitColumns(block) : SplitRows(block);
    WidenByOffsets(offsets, lattice, halves.first, parent, linear);
    WidenByOffsets(offsets, lattice, halves.second, parent, linear);
}

}  // namespace zelmo
