#include "gds/placed_references.h"

#include "gds/placed_boxes.h"

namespace zelmo {

std::size_t ReferenceCount(const GdsCell& cell) {
    return cell.srefs.size() + cell.arefs.size();
}

PlacedReference ReferenceAt(const GdsCell& cell, std::size_t index) {
    if (index < cell.srefs.size()) {
        const GdsSref& sref = cell.srefs[index];
        return {sref.cell, nullptr, sref.origin, sref.strans, sref.mag, sref.angle};
    }
    const GdsAref& aref = cell.arefs[index - cell.srefs.size()];
    return {aref.cell, &aref, {}, aref.strans, aref.mag, aref.angle};
}

PlacementKey ChildKey(const PlacedReference& reference, const GdsTransform& parent,
                      const LinearPart& linear) {
    return LinearKeyOf(*reference.cell, PlaceChild({}, reference.mag, reference.angle,
                                                   reference.strans, parent, linear));
}

GdsPoint LeastOffset(const GdsAref& aref, const LatticeBlock& block, const GdsTransform& parent,
                     const LinearPart& linear) {
    const GdsRect offsets =
        BlockOffsets(LatticeOf(aref), PositionRule::Truncate64, block, parent, linear);
    return {offsets.xmin, offsets.ymin};
}

PlaceCounts::PlaceCounts(const GdsDatabase& database, const CellOrder& order, std::size_t cell)
    : database_(database), counts_(database.cells.size()) {
    for (const std::size_t number : order.childrenFirst) {
        counts_[number] = number == cell ? CountOf(1) : CountIn(database.cells[number]);
    }
}

const FlatCount& PlaceCounts::Of(const GdsCell& cell) const {
    return counts_[static_cast<std::size_t>(&cell - database_.cells.begin())];
}

bool PlaceCounts::Leads(const PlacedReference& reference) const {
    return reference.cell != nullptr && Of(*reference.cell) != FlatCount() &&
           (reference.array == nullptr || InstancesOf(*reference.array) != 0);
}

FlatCount PlaceCounts::CountIn(const GdsCell& cell) const {
    FlatCount count;
    for (std::size_t i = 0; i < ReferenceCount(cell); ++i) {
        const PlacedReference reference = ReferenceAt(cell, i);
        if (reference.cell != nullptr) {
            const std::uint64_t times =
                reference.array == nullptr ? 1 : InstancesOf(*reference.array);
            count = count + CountOf(times) * Of(*reference.cell);
        }
    }
    return count;
}

}  // namespace zelmo
