#include "gds/cell_bounds.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <stdexcept>
#include <string>
#include <vector>

#include "base/log_console.h"
#include "gds/array_lattice.h"
#include "gds/coordinates.h"
#include "gds/gds_database.h"

namespace zelmo {

namespace {

/// Linear parts of placements. The sine and cosine of the last angle but 0 are at hand: references
/// that follow each other are often turned alike.
class LinearParts {
public:
    LinearPart Of(const GdsTransform& transform) {
        if (transform.angle == 0.0) {
            return LinearPartOf(transform);
        }
        if (transform.angle != angle_) {
            angle_ = transform.angle;
            last_ = LinearPartOf(transform);
        }
        return {last_.cosine, last_.sine, transform.flip != 0 ? -1.0 : 1.0, transform.mag};
    }

private:
    double angle_ = 0.0;
    LinearPart last_;
};

/// A cell that is being sized, and how far that has come.
struct SizingVisit {
    GdsCell* cell;
    GdsTransform transform;
    LinearPart linear;
    GdsRect bounds;        ///< under the transform
    std::size_t next = 0;  ///< the reference to follow next: srefs, then arefs
};

SizingVisit BeginVisit(GdsCell& cell, const GdsTransform& transform) {
    GdsRect own{0, 0, 0, 0};
    for (const GdsBoundary& boundary : cell.boundaries) {
        MergeRect(own, boundary.bounds);
    }
    const LinearPart linear = LinearPartOf(transform);
    return {&cell, transform, linear, PlaceRect(own, transform, linear)};
}

GdsRect EndVisit(const SizingVisit& visit) {
    visit.cell->bounds = TransformRect(visit.bounds, visit.transform, true);
    visit.cell->boundsValid = true;
    return visit.bounds;
}

GdsTransform PlaceInstance(const SizingVisit& visit, const GdsAref& aref, GdsPoint position) {
    return PlaceChild(position, aref.mag, aref.angle, aref.strans, visit.transform, visit.linear);
}

/// Widens the visit's box by a block of instances of a sized cell. They differ in their offset
/// alone, and no side of a placed box falls when its offset rises: the least and the greatest
/// offsets give the box of all.
void TakeBlock(SizingVisit& visit, const GdsAref& aref, const ArrayLattice& lattice,
               const LatticeBlock& block) {
    if (block.IsEmpty()) {
        return;
    }
    GdsTransform child = PlaceInstance(
        visit, aref,
        InstancePosition(lattice, PositionRule::Truncate64, block.firstColumn, block.firstRow));
    GdsRect offsets{child.dx, child.dy, child.dx, child.dy};
    WidenByOffsets(offsets, lattice, block, visit.transform, visit.linear);
    const LinearPart linear = LinearPartOf(child);
    child.dx = offsets.xmin;
    child.dy = offsets.ymin;
    MergeRect(visit.bounds, PlaceRect(aref.cell->bounds, child, linear));
    child.dx = offsets.xmax;
    child.dy = offsets.ymax;
    MergeRect(visit.bounds, PlaceRect(aref.cell->bounds, child, linear));
}

/// All instances but the first.
void TakeRestOfArray(SizingVisit& visit, const GdsAref& aref) {
    const ArrayLattice lattice = LatticeOf(aref);
    LatticeBlock firstColumn = WholeBlock(aref);
    firstColumn.lastColumn = 0;
    firstColumn.firstRow = 1;
    LatticeBlock otherColumns = WholeBlock(aref);
    otherColumns.firstColumn = 1;
    TakeBlock(visit, aref, lattice, firstColumn);
    TakeBlock(visit, aref, lattice, otherColumns);
}

/// The next reference of a visit: its cell, under the placement of the first instance.
struct FirstInstance {
    GdsCell* cell = nullptr;  ///< null for an array without instances
    GdsTransform transform;
};

FirstInstance NextReference(const SizingVisit& visit) {
    const GdsCell& cell = *visit.cell;
    if (visit.next < cell.srefs.size()) {
        const GdsSref& sref = cell.srefs[visit.next];
        return {sref.cell, PlaceChild(sref.origin, sref.mag, sref.angle, sref.strans,
                                      visit.transform, visit.linear)};
    }
    const GdsAref& aref = cell.arefs[visit.next - cell.srefs.size()];
    const ArrayLattice lattice = LatticeOf(aref);
    if (WholeBlock(aref).IsEmpty()) {
        return {};
    }
    return {aref.cell,
            PlaceInstance(visit, aref, InstancePosition(lattice, PositionRule::Truncate64, 0, 0))};
}

/// Adds the reference that is up next, whose cell has just been sized through the first instance.
/// `first` is the box that this one has.
void TakeFirstUse(SizingVisit& visit, const GdsRect& first) {
    const GdsCell& cell = *visit.cell;
    MergeRect(visit.bounds, first);
    if (visit.next >= cell.srefs.size()) {
        TakeRestOfArray(visit, cell.arefs[visit.next - cell.srefs.size()]);
    }
    ++visit.next;
}

/// The same where the cell has been sized before.
void TakeLaterUse(SizingVisit& visit, const FirstInstance& instance, LinearParts& parts) {
    const GdsCell& cell = *visit.cell;
    if (visit.next < cell.srefs.size()) {
        MergeRect(visit.bounds, PlaceRect(instance.cell->bounds, instance.transform,
                                          parts.Of(instance.transform)));
    } else {
        const GdsAref& aref = cell.arefs[visit.next - cell.srefs.size()];
        TakeBlock(visit, aref, LatticeOf(aref), WholeBlock(aref));
    }
    ++visit.next;
}

}  // namespace

void MeasureBoundary(GdsBoundary& boundary) {
    boundary.bounds = boundary.points.As([](const auto points) {
        GdsRect bounds;
        for (const GdsPoint point : points) {
            WidenByPoint(bounds, point);
        }
        return bounds;
    });
}

void ComputeBoundaryBounds(GdsDatabase& database, LogConsole* console) {
    for (GdsCell& cell : database.cells) {
        for (GdsBoundary& boundary : cell.boundaries) {
            if (boundary.points.empty()) {
                throw std::out_of_range("invalid vector subscript");
            }
            if (boundary.bounds == GdsRect()) {
                MeasureBoundary(boundary);
            }
            if (SmallerSide(boundary.bounds) == 0) {
                console->Write(
                    fmt::format("WARNING: Zero size boundary element in cell {:s} with at ({}, {})",
                                NameText(cell.name), boundary.bounds.xmin, boundary.bounds.ymin));
            }
        }
    }
}

GdsRect ComputeCellBounds(GdsCell& cell, const GdsTransform& transform) {
    if (cell.boundsValid) {
        return TransformRect(cell.bounds, transform, false);
    }
    LinearParts parts;
    SizingVisit start = BeginVisit(cell, transform);
    std::vector<SizingVisit> below;  // most cells need none, and no memory for it
    while (true) {
        SizingVisit& visit = below.empty() ? start : below.back();
        if (visit.next == visit.cell->srefs.size() + visit.cell->arefs.size()) {
            const GdsRect bounds = EndVisit(visit);
            if (below.empty()) {
                return bounds;
            }
            below.pop_back();
            TakeFirstUse(below.empty() ? start : below.back(), bounds);
            continue;
        }
        const FirstInstance instance = NextReference(visit);
        if (instance.cell == nullptr) {
            ++visit.next;
        } else if (instance.cell->boundsValid) {
            TakeLaterUse(visit, instance, parts);
        } else {
            below.push_back(BeginVisit(*instance.cell, instance.transform));
        }
    }
}

}  // namespace zelmo
