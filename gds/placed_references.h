#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "gds/array_lattice.h"
#include "gds/cell_order.h"
#include "gds/flat_count.h"
#include "gds/gds_database.h"
#include "gds/placement_key.h"

namespace zelmo {

/// A reference of either kind, as it places its cell.
struct PlacedReference {
    const GdsCell* cell = nullptr;
    const GdsAref* array = nullptr;  ///< null: of a single instance
    GdsPoint origin;                 ///< of that one
    std::uint16_t strans = 0;
    double mag = 1.0;
    double angle = 0.0;
};

/// How many references a cell has, and one of them by its number: those of single instances first.
std::size_t ReferenceCount(const GdsCell& cell);
PlacedReference ReferenceAt(const GdsCell& cell, std::size_t index);

/// The key of a reference's cell where the cell with the reference stands under `parent`.
PlacementKey ChildKey(const PlacedReference& reference, const GdsTransform& parent,
                      const LinearPart& linear);

/// The least offset in x and in y that instances of a block have.
GdsPoint LeastOffset(const GdsAref& aref, const LatticeBlock& block, const GdsTransform& parent,
                     const LinearPart& linear);

/// How often each cell contains the one that is looked for, which contains itself once.
class PlaceCounts {
public:
    PlaceCounts(const GdsDatabase& database, const CellOrder& order, std::size_t cell);

    const FlatCount& Of(const GdsCell& cell) const;

    /// Whether there is a place of the cell in what a reference places.
    bool Leads(const PlacedReference& reference) const;

private:
    FlatCount CountIn(const GdsCell& cell) const;

    const GdsDatabase& database_;
    std::vector<FlatCount> counts_;
};

}  // namespace zelmo
