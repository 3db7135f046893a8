#include "gds/polygon_selection.h"

#include <optional>
#include <utility>

#include "gds/array_lattice.h"
#include "gds/coordinates.h"
#include "gds/fruitless_placements.h"
#include "gds/gds_database.h"
#include "gds/placed_content.h"

namespace zelmo {

namespace {

/// Columns of an array are taken apart down to pieces of this many instances, which are then tested
/// one by one.
constexpr std::int32_t shortPiece = 8;

/// The array whose instances a visit is going through.
struct OpenArray {
    const GdsCell* cell = nullptr;
    ArrayLattice lattice;
    GdsTransform child;  ///< of an instance, without its offset
    LinearPart childLinear;
    std::vector<LatticeBlock> pending;  ///< the next block last
};

/// A cell that is to be entered, with the sine and cosine that belong to its placement.
struct ReachedCell {
    const GdsCell* cell = nullptr;
    GdsTransform transform;
    LinearPart linear;
};

/// A cell whose references are being followed.
struct CellVisit {
    const GdsCell* cell = nullptr;
    GdsTransform transform;
    LinearPart linear;
    std::size_t selectedBefore = 0;  ///< polygons selected when it was entered
    std::uint64_t droppedBefore = 0;
    std::size_t next = 0;  ///< the reference to follow next: srefs, then arefs
    std::optional<OpenArray> array{};
};

/// A walk through a hierarchy, on a stack of its own.
struct CellWalk {
    ExtractionScope& scope;
    ContentTable contents;
    FruitlessPlacements fruitless{};
    std::size_t visits = 0;
    std::uint64_t fruitlessTests = 0;  ///< since the last polygon that was selected
    std::vector<CellVisit> path{};

    bool IsSpent() const { return fruitlessTests > scope.limits.fruitlessTests; }
};

bool Overlaps(const ExtractionWindow& window, const GdsRect& box) {
    return window.x0 < box.xmax && window.x1 > box.xmin && window.y1 > box.ymin &&
           window.y0 < box.ymax;
}

bool LiesInside(const ExtractionWindow& window, const GdsRect& box) {
    return window.x0 < box.xmin && window.x1 > box.xmax && window.y1 > box.ymax &&
           window.y0 < box.ymin;
}

RawPolygon PlacePolygon(const ExtractionWindow& window, const GdsBoundary& boundary,
                        const GdsTransform& transform, const LinearPart& linear) {
    RawPolygon polygon;
    polygon.layer = boundary.layer;
    polygon.datatype = boundary.datatype;
    polygon.points.reserve(boundary.points.size());
    for (const GdsPoint point : boundary.points) {
        const GdsPoint placed = PlacePoint(point, transform, linear);
        polygon.points.push_back(
            {SaturatingSubtract(placed.x, window.x0), SaturatingSubtract(placed.y, window.y0)});
    }
    return polygon;
}

/// Appends the cell's own polygons, up to a limit.
std::optional<ExtractionRefusal> CollectBoundaries(ExtractionScope& scope,
                                                   const ReachedCell& placed) {
    for (const GdsBoundary& boundary : placed.cell->boundaries) {
        const GdsRect box = PlaceRect(boundary.bounds, placed.transform, placed.linear);
        if (!Overlaps(scope.window, box)) {
            continue;
        }
        if (SmallerSide(box) < scope.window.minSize) {
            ++scope.skipped;
            continue;
        }
        scope.output.push_back(
            PlacePolygon(scope.window, boundary, placed.transform, placed.linear));
        scope.points += scope.output.back().points.size();
        if (scope.output.size() == scope.limits.polygons) {
            return ExtractionRefusal::TooManyPolygons;
        }
        if (scope.points > scope.limits.points) {
            return ExtractionRefusal::TooManyPoints;
        }
    }
    return std::nullopt;
}

/// Whether instances of a cell at some offsets select nothing, so that they need not be entered.
/// Those of their polygons that are dropped for their size are counted here.
bool SelectNothing(CellWalk& walk, const GdsCell& cell, const GdsTransform& child,
                   const GdsRect& offsets, std::uint64_t instances) {
    if (walk.visits < walk.scope.limits.patience) {
        return false;
    }
    const PlacedContent* content = walk.contents.Of(cell, child);
    if (content == nullptr || content->empty) {
        return content != nullptr;
    }
    if (!StaysBounded(*content, offsets)) {
        return false;
    }
    if (!Overlaps(walk.scope.window, MoveRect(content->polygonBox, offsets))) {
        return true;
    }
    if (content->allSmall && LiesInside(walk.scope.window, MoveRect(content->wholeBox, offsets))) {
        walk.scope.skipped += instances * content->small;
        return true;
    }
    return false;
}

/// Whether a placement was walked through before and selected nothing. Those of its polygons that
/// are dropped for their size are counted here.
bool WasFruitless(CellWalk& walk, const GdsCell& cell, const GdsTransform& child) {
    if (walk.visits < walk.scope.limits.patience) {
        return false;
    }
    const std::optional<std::uint64_t> dropped = walk.fruitless.Find(cell, child);
    walk.scope.skipped += dropped.value_or(0);
    return dropped.has_value();
}

/// Whether a cell is to be entered. `linear` belongs to the child.
bool IsInReach(CellWalk& walk, const GdsCell& cell, const GdsTransform& child,
               const LinearPart& linear) {
    return Overlaps(walk.scope.window, PlaceRect(cell.bounds, child, linear)) &&
           !WasFruitless(walk, cell, child) &&
           !SelectNothing(walk, cell, child, {child.dx, child.dy, child.dx, child.dy}, 1);
}

OpenArray BeginArray(const CellVisit& visit, const GdsAref& aref) {
    OpenArray array;
    array.cell = aref.cell;
    array.lattice = LatticeOf(aref);
    array.child = PlaceChild({}, aref.mag, aref.angle, aref.strans, visit.transform, visit.linear);
    array.childLinear = LinearPartOf(array.child);
    if (const LatticeBlock all = WholeBlock(aref); !all.IsEmpty()) {
        array.pending.push_back(all);
    }
    return array;
}

GdsTransform WithOffset(GdsTransform transform, std::int64_t dx, std::int64_t dy) {
    transform.dx = dx;
    transform.dy = dy;
    return transform;
}

/// Whether some of the instances of a block can be in reach. Sides of placed boxes rise with their
/// offsets, so the least and the greatest offsets bound them all.
bool CanBeInReach(CellWalk& walk, const CellVisit& visit, const LatticeBlock& block) {
    const OpenArray& array = *visit.array;
    const GdsRect offsets =
        BlockOffsets(array.lattice, PositionRule::Truncate32, block, visit.transform, visit.linear);
    const GdsRect lowest = PlaceRect(
        array.cell->bounds, WithOffset(array.child, offsets.xmin, offsets.ymin), array.childLinear);
    const GdsRect highest = PlaceRect(
        array.cell->bounds, WithOffset(array.child, offsets.xmax, offsets.ymax), array.childLinear);
    return Overlaps(walk.scope.window, {lowest.xmin, lowest.ymin, highest.xmax, highest.ymax}) &&
           !SelectNothing(walk, *array.cell, array.child, offsets, block.InstanceCount());
}

/// The placement of the first instance of a piece of a column, which is taken off the piece.
GdsTransform TakeInstance(CellVisit& visit) {
    OpenArray& array = *visit.array;
    LatticeBlock& piece = array.pending.back();
    const GdsPoint position = InstancePosition(array.lattice, PositionRule::Truncate32,
                                               piece.firstColumn, piece.firstRow);
    const GdsPoint offset = PlacePoint(position, visit.transform, visit.linear);
    if (++piece.firstRow > piece.lastRow) {
        array.pending.pop_back();
    }
    return WithOffset(array.child, offset.x, offset.y);
}

/// The next instance in reach of the visit's open array, column by column.
std::optional<ReachedCell> NextInstance(CellWalk& walk, CellVisit& visit) {
    OpenArray& array = *visit.array;
    while (!array.pending.empty() && !walk.IsSpent()) {
        ++walk.fruitlessTests;
        const LatticeBlock block = array.pending.back();
        if (block.IsOneColumn() && block.lastRow - block.firstRow < shortPiece) {
            const GdsTransform child = TakeInstance(visit);
            if (IsInReach(walk, *array.cell, child, array.childLinear)) {
                return ReachedCell{array.cell, child, array.childLinear};
            }
            continue;
        }
        array.pending.pop_back();
        if (CanBeInReach(walk, visit, block)) {
            const BlockHalves halves = block.IsOneColumn() ? SplitRows(block) : SplitColumns(block);
            array.pending.push_back(halves.second);
            array.pending.push_back(halves.first);
        }
    }
    return std::nullopt;
}

/// The next cell in reach below the visited one.
std::optional<ReachedCell> NextChild(CellWalk& walk, CellVisit& visit) {
    const GdsCell& cell = *visit.cell;
    while (visit.next < cell.srefs.size() && !walk.IsSpent()) {
        ++walk.fruitlessTests;
        const GdsSref& sref = cell.srefs[visit.next++];
        const GdsTransform child = PlaceChild(sref.origin, sref.mag, sref.angle, sref.strans,
                                              visit.transform, visit.linear);
        const LinearPart linear = LinearPartOf(child);
        if (IsInReach(walk, *sref.cell, child, linear)) {
            return ReachedCell{sref.cell, child, linear};
        }
    }
    while (visit.next < cell.srefs.size() + cell.arefs.size() && !walk.IsSpent()) {
        if (!visit.array) {
            visit.array = BeginArray(visit, cell.arefs[visit.next - cell.srefs.size()]);
        }
        if (const std::optional<ReachedCell> instance = NextInstance(walk, visit)) {
            return instance;
        }
        visit.array.reset();
        ++visit.next;
    }
    return std::nullopt;
}

/// Collects the cell's own polygons and sets out for its references.
std::optional<ExtractionRefusal> Enter(CellWalk& walk, const ReachedCell& placed) {
    ++walk.visits;
    const std::size_t selectedBefore = walk.scope.output.size();
    const std::uint64_t droppedBefore = walk.scope.skipped;
    if (const auto refusal = CollectBoundaries(walk.scope, placed)) {
        return refusal;
    }
    if (walk.scope.output.size() != selectedBefore) {
        walk.fruitlessTests = 0;
    } else {
        walk.fruitlessTests += placed.cell->boundaries.size();
    }
    if (!placed.cell->srefs.empty() || !placed.cell->arefs.empty()) {
        walk.path.push_back(
            {placed.cell, placed.transform, placed.linear, selectedBefore, droppedBefore});
    }
    return std::nullopt;
}

/// Ends the innermost visit.
void Leave(CellWalk& walk) {
    const CellVisit& visit = walk.path.back();
    if (walk.visits >= walk.scope.limits.patience &&
        walk.scope.output.size() == visit.selectedBefore) {
        walk.fruitless.Add(*visit.cell, visit.transform, walk.scope.skipped - visit.droppedBefore);
    }
    walk.path.pop_back();
}

}  // namespace

std::optional<ExtractionRefusal> CollectCellPolygons(ExtractionScope& scope,
                                                     const PlacedCell& placedCell) {
    CellWalk walk{scope, ContentTable(scope.window.minSize)};
    const LinearPart linear = LinearPartOf(placedCell.transform);
    auto refusal = Enter(walk, {placedCell.cell, placedCell.transform, linear});
    while (!refusal && !walk.path.empty()) {
        const std::optional<ReachedCell> child = NextChild(walk, walk.path.back());
        if (walk.IsSpent()) {
            refusal = ExtractionRefusal::FruitlessSearch;
        } else if (child) {
            refusal = Enter(walk, *child);
        } else {
            Leave(walk);
        }
    }
    return refusal;
}

}  // namespace zelmo
