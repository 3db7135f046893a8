#pragma once

#include <cstdint>

#include "gds/placement.h"

// The instances of an array. Where an instance stands follows from its column and row through sums,
// products and truncations that each keep the order of their operands; so the positions of a block
// of instances lie within those of its corners, to the bit, and whole blocks can be judged at once.

namespace zelmo {

/// A rectangle of instances, both ends included.
struct LatticeBlock {
    std::int32_t firstColumn = 0;
    std::int32_t lastColumn = 0;
    std::int32_t firstRow = 0;
    std::int32_t lastRow = 0;

    bool IsEmpty() const { return firstColumn > lastColumn || firstRow > lastRow; }
    bool IsOneColumn() const { return firstColumn == lastColumn; }
    std::uint64_t InstanceCount() const {
        return static_cast<std::uint64_t>(lastColumn - firstColumn + 1) *
               static_cast<std::uint64_t>(lastRow - firstRow + 1);
    }
};

/// The first half of a block and the rest, divided across the columns or across the rows.
struct BlockHalves {
    LatticeBlock first;
    LatticeBlock second;
};
BlockHalves SplitColumns(const LatticeBlock& block);
BlockHalves SplitRows(const LatticeBlock& block);

/// An array's origin and pitches.
struct ArrayLattice {
    double originX = 0.0;
    double originY = 0.0;
    double columnStepX = 0.0;
    double columnStepY = 0.0;
    double rowStepX = 0.0;
    double rowStepY = 0.0;
};

/// Throws std::out_of_range if the array has fewer than three points.
ArrayLattice LatticeOf(const GdsAref& aref);

/// All instances; empty where there are no columns or no rows.
LatticeBlock WholeBlock(const GdsAref& aref);

/// How a position becomes a coordinate.
enum class PositionRule {
    Truncate64,  ///< for sizing
    Truncate32,  ///< for extraction: beyond 32 bits lies the most negative number
};

/// Where an instance stands in the array's cell.
GdsPoint InstancePosition(const ArrayLattice& lattice, PositionRule rule, std::int32_t column,
                          std::int32_t row);

/// The smallest known box of the placed positions of all instances of a block: the offsets that
/// its instances can have under a placement.
GdsRect BlockOffsets(const ArrayLattice& lattice, PositionRule rule, const LatticeBlock& block,
                     const GdsTransform& parent, const LinearPart& linear);

/// Widens a box by the placed positions (PositionRule::Truncate64) of all instances of a block that
/// is not empty, and by nothing else.
void WidenByOffsets(GdsRect& offsets, const ArrayLattice& lattice, const LatticeBlock& block,
                    const GdsTransform& parent, const LinearPart& linear);

}  // namespace zelmo
