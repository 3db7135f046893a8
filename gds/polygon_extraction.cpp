#include "gds/polygon_extraction.h"

#include <fmt/format.h>

#include <algorithm>
#include <limits>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

#include "gds/array_lattice.h"
#include "gds/coordinates.h"
#include "gds/gds_database.h"
#include "shell/log_console.h"

namespace zelmo {

namespace {

constexpr std::uint32_t limitReached = 2;

/// Columns of an array are taken apart down to pieces of this many instances, which are then tested
/// one by one.
constexpr std::int32_t shortPiece = 8;

/// The array whose instances a visit is going through.
struct OpenArray {
    ArrayLattice lattice;
    GdsTransform child;  ///< of an instance, without its offset
    LinearPart childLinear;
    std::vector<LatticeBlock> pending;  ///< the next block last
};

/// A cell whose references are being followed.
struct CellVisit {
    const GdsCell* cell;
    GdsTransform transform;
    LinearPart linear;
    std::size_t next = 0;  ///< the reference to follow next: srefs, then arefs
    std::optional<OpenArray> array;
};

bool Overlaps(const ExtractionScope& scope, const GdsRect& box) {
    return scope.x0 < box.xmax && scope.x1 > box.xmin && scope.y1 > box.ymin && scope.y0 < box.ymax;
}

bool IsSmall(const GdsRect& box, std::int64_t minSize) {
    return std::min(SaturatingSubtract(box.ymax, box.ymin),
                    SaturatingSubtract(box.xmax, box.xmin)) < minSize;
}

RawPolygon PlacePolygon(const ExtractionScope& scope, const GdsBoundary& boundary,
                        const GdsTransform& transform, const LinearPart& linear) {
    RawPolygon polygon;
    polygon.layer = boundary.layer;
    polygon.points.reserve(boundary.points.size());
    for (const GdsPoint point : boundary.points) {
        const GdsPoint placed = PlacePoint(point, transform, linear);
        polygon.points.push_back(
            {SaturatingSubtract(placed.x, scope.x0), SaturatingSubtract(placed.y, scope.y0)});
    }
    return polygon;
}

/// Appends the cell's own polygons. False when the limit is reached.
bool CollectBoundaries(ExtractionScope& scope, const PlacedCell& placed, const LinearPart& linear) {
    for (const GdsBoundary& boundary : placed.cell->boundaries) {
        const GdsRect box = PlaceRect(boundary.bounds, placed.transform, linear);
        if (!Overlaps(scope, box)) {
            continue;
        }
        if (IsSmall(box, scope.minSize)) {
            ++scope.skipped;
            continue;
        }
        scope.output.push_back(PlacePolygon(scope, boundary, placed.transform, linear));
        if (scope.output.size() == scope.limit) {
            return false;
        }
    }
    return true;
}

OpenArray BeginArray(const CellVisit& visit, const GdsAref& aref) {
    OpenArray array;
    array.lattice = LatticeOf(aref);
    array.child = PlaceChild({}, aref.mag, aref.angle, aref.strans, visit.transform, visit.linear);
    array.childLinear = LinearPartOf(array.child);
    const LatticeBlock all = WholeBlock(aref);
    if (!all.IsEmpty() && !aref.cell->withoutPolygons) {
        array.pending.push_back(all);
    }
    return array;
}

/// Whether instances of the block can meet the rectangle. Sides of placed boxes rise with their
/// offsets, so the least and the greatest offsets bound them all.
bool CanMeet(const ExtractionScope& scope, const CellVisit& visit, const OpenArray& array,
             const GdsRect& cellBounds, const LatticeBlock& block) {
    const GdsRect offsets =
        BlockOffsets(array.lattice, PositionRule::Truncate32, block, visit.transform, visit.linear);
    GdsTransform child = array.child;
    child.dx = offsets.xmin;
    child.dy = offsets.ymin;
    const GdsRect lowest = PlaceRect(cellBounds, child, array.childLinear);
    child.dx = offsets.xmax;
    child.dy = offsets.ymax;
    const GdsRect highest = PlaceRect(cellBounds, child, array.childLinear);
    return Overlaps(scope, {lowest.xmin, lowest.ymin, highest.xmax, highest.ymax});
}

/// The placement of the first instance of a piece of a column, which is taken off the piece.
GdsTransform TakeInstance(const CellVisit& visit, OpenArray& array) {
    LatticeBlock& piece = array.pending.back();
    const GdsPoint position = InstancePosition(array.lattice, PositionRule::Truncate32,
                                               piece.firstColumn, piece.firstRow);
    const GdsPoint offset = PlacePoint(position, visit.transform, visit.linear);
    GdsTransform child = array.child;
    child.dx = offset.x;
    child.dy = offset.y;
    if (++piece.firstRow > piece.lastRow) {
        array.pending.pop_back();
    }
    return child;
}

/// The next instance of the open array that meets the rectangle, column by column.
std::optional<PlacedCell> NextInstance(const ExtractionScope& scope, CellVisit& visit,
                                       const GdsCell& cell) {
    OpenArray& array = *visit.array;
    while (!array.pending.empty()) {
        const LatticeBlock block = array.pending.back();
        if (block.IsOneColumn() && block.lastRow - block.firstRow < shortPiece) {
            const GdsTransform child = TakeInstance(visit, array);
            if (Overlaps(scope, PlaceRect(cell.bounds, child, array.childLinear))) {
                return PlacedCell{&cell, child};
            }
            continue;
        }
        array.pending.pop_back();
        if (CanMeet(scope, visit, array, cell.bounds, block)) {
            const BlockHalves halves = block.IsOneColumn() ? SplitRows(block) : SplitColumns(block);
            array.pending.push_back(halves.second);
            array.pending.push_back(halves.first);
        }
    }
    return std::nullopt;
}

/// The next cell below the visited one that meets the rectangle.
std::optional<PlacedCell> NextChild(const ExtractionScope& scope, CellVisit& visit) {
    const GdsCell& cell = *visit.cell;
    while (visit.next < cell.srefs.size()) {
        const GdsSref& sref = cell.srefs[visit.next++];
        const GdsTransform child = PlaceChild(sref.origin, sref.mag, sref.angle, sref.strans,
                                              visit.transform, visit.linear);
        if (!sref.cell->withoutPolygons &&
            Overlaps(scope, TransformRect(sref.cell->bounds, child, false))) {
            return PlacedCell{sref.cell, child};
        }
    }
    while (visit.next < cell.srefs.size() + cell.arefs.size()) {
        const GdsAref& aref = cell.arefs[visit.next - cell.srefs.size()];
        if (!visit.array) {
            visit.array = BeginArray(visit, aref);
        }
        if (const std::optional<PlacedCell> instance = NextInstance(scope, visit, *aref.cell)) {
            return instance;
        }
        visit.array.reset();
        ++visit.next;
    }
    return std::nullopt;
}

ExtractionScope ScopeOf(const ProcessModel& model, double micronsPerUnit) {
    const auto toUnits = [&](float microns) {
        return TruncateToI64(static_cast<double>(microns) / micronsPerUnit);
    };
    ExtractionScope scope;
    scope.x0 = toUnits(model.gridOriginX);
    scope.y0 = toUnits(model.gridOriginY);
    scope.x1 = toUnits(model.gridOriginX + model.gridWidth);
    scope.y1 = toUnits(model.gridOriginY + model.gridHeight);
    scope.minSize = toUnits(model.gridSpacing);
    return scope;
}

const GdsCell* FindCell(const GdsDatabase& database, const std::string& name) {
    const auto found =
        std::find_if(database.cells.begin(), database.cells.end(),
                     [&](const GdsCell& cell) { return NameText(cell.name) == NameText(name); });
    return found == database.cells.end() ? nullptr : &*found;
}

/// The polygon in micrometres. Values have single precision. The greatest coordinates start at the
/// smallest positive number, where polygons at negative coordinates leave them.
MaskPolygon ToMicrons(const RawPolygon& raw, float micronsPerUnit) {
    MaskPolygon polygon;
    polygon.layer = raw.layer;
    polygon.minX = polygon.minY = std::numeric_limits<double>::max();
    polygon.maxX = polygon.maxY = std::numeric_limits<double>::min();
    polygon.points.reserve(raw.points.size());
    for (const GdsPoint point : raw.points) {
        const double x = static_cast<float>(point.x) * micronsPerUnit;
        const double y = static_cast<float>(point.y) * micronsPerUnit;
        polygon.points.push_back({x, y});
        polygon.minX = std::min(polygon.minX, x);
        polygon.minY = std::min(polygon.minY, y);
        polygon.maxX = std::max(polygon.maxX, x);
        polygon.maxY = std::max(polygon.maxY, y);
    }
    return polygon;
}

}  // namespace

std::uint32_t CollectCellPolygons(ExtractionScope& scope, const PlacedCell& placedCell) {
    std::vector<CellVisit> path;
    std::optional<PlacedCell> entered = placedCell;
    while (true) {
        if (entered) {
            const LinearPart linear = LinearPartOf(entered->transform);
            if (!CollectBoundaries(scope, *entered, linear)) {
                return limitReached;
            }
            path.push_back({entered->cell, entered->transform, linear, 0, std::nullopt});
        } else {
            path.pop_back();
        }
        if (path.empty()) {
            return 0;
        }
        entered = NextChild(scope, path.back());
    }
}

void ExtractPolygons(ProcessModel& model, LogConsole* console, const GdsDatabase& database) {
    console->Write(L"");
    console->Write(L"Extracting polygons");
    ExtractionScope scope = ScopeOf(model, database.micronsPerUnit);
    const GdsCell* cell = FindCell(database, model.cellName);
    if (cell == nullptr) {
        console->Write(fmt::format("ERROR: Cell name {} was not found in the GDS database",
                                   NameText(model.cellName)));
        throw std::runtime_error("");
    }
    if (CollectCellPolygons(scope, {cell, GdsTransform()}) == limitReached) {
        console->Write("ERROR: Reached the maximum number of polygons");
        throw std::runtime_error("");
    }
    model.rawPolygons = std::move(scope.output);
    model.polygons.clear();
    const auto micronsPerUnit = static_cast<float>(database.micronsPerUnit);
    double smallest = std::numeric_limits<double>::max();
    for (const RawPolygon& raw : model.rawPolygons) {
        MaskPolygon polygon = ToMicrons(raw, micronsPerUnit);
        smallest =
            std::min(smallest, std::min(polygon.maxY - polygon.minY, polygon.maxX - polygon.minX));
        model.polygons.push_back(std::move(polygon));
    }
    console->Write(fmt::format("Extracted {} polygons with smallest size {:.3g} um",
                               model.polygons.size(), smallest));
    if (scope.skipped != 0) {
        console->Write(
            fmt::format("WARNING: skipped {} polygons smaller than the resolution of {:.3g} um",
                        scope.skipped, model.gridSpacing));
    }
}

}  // namespace zelmo
