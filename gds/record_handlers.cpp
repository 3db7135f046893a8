#include "gds/record_handlers.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>
#include <stdexcept>
#include <utility>

#include "base/log_console.h"
#include "gds/cell_bounds.h"
#include "gds/path_outline.h"
#include "gds/placement.h"

// A table tells in which state of the open element each record is accepted and with which code it
// is refused elsewhere; a function for each then takes what a mask needs of it.

namespace zelmo {

namespace {

constexpr std::int32_t success = 0;
constexpr std::int32_t pathRefused = 3;
constexpr std::int32_t unitsNotPositive = 4;
constexpr std::int32_t wrongPointCount = 22;
constexpr std::int32_t layerMissing = 28;

constexpr std::uint16_t roundEnds = 1;
constexpr std::uint16_t extendedEnds = 2;
constexpr std::uint16_t variableEnds = 4;

// The library

std::int32_t ReadHeader(LibraryState& state, const StreamRecord& record) {
    state.head.version = record.U16At(0);
    return success;
}

std::int32_t ReadUnits(LibraryState& state, const StreamRecord& record) {
    const double userUnit = record.RealAt(0);
    const double metresPerUnit = record.RealAt(8);
    state.head.units = {userUnit, metresPerUnit};
    return 0.0 >= userUnit || 0.0 >= metresPerUnit ? unitsNotPositive : success;
}

std::int32_t EndLibrary(LibraryState& state, const StreamRecord&) {
    state.endSeen = true;
    return success;
}

// Structures

std::string_view Kept(RunPool<char>& names, std::string_view name) {
    const std::span<const char> kept = names.Keep(name);
    return {kept.data(), kept.size()};
}

std::int32_t BeginStructure(LibraryState& state, const StreamRecord&) {
    state.inStructure = true;
    return success;
}

std::int32_t ReadStructureName(LibraryState& state, const StreamRecord& record) {
    state.cell.name = Kept(state.store.names, record.Text());
    return success;
}

/// An element that is still open stays open, and becomes part of a later structure.
std::int32_t EndStructure(LibraryState& state, const StreamRecord&) {
    state.inStructure = false;
    if (std::exchange(state.continuesCell, false)) {
        state.continued = std::exchange(state.cell, OpenCell());
    } else {
        CompleteCell(state);
    }
    return success;
}

// Elements

template <Element element>
std::int32_t BeginElement(LibraryState& state, const StreamRecord&) {
    state.open.kind = element;
    return success;
}

std::int32_t BeginSref(LibraryState& state, const StreamRecord&) {
    state.open.sref.mag = 1.0;
    state.open.kind = Element::Sref;
    return success;
}

std::int32_t BeginAref(LibraryState& state, const StreamRecord&) {
    state.open.aref.mag = 1.0;
    state.open.kind = Element::Aref;
    return success;
}

std::int32_t ReadLayer(LibraryState& state, const StreamRecord& record) {
    if (state.open.kind == Element::Boundary) {
        state.open.boundary.layer = record.U16At(0);
        state.open.layerSeen = true;
    } else if (state.open.kind == Element::Path) {
        state.open.path.layer = record.U16At(0);
        state.open.layerSeen = true;
    }
    return success;
}

/// The width of a text stays behind for the next path.
std::int32_t ReadWidth(LibraryState& state, const StreamRecord& record) {
    state.open.path.width = record.U32At(0);
    return success;
}

/// Only the first path of either unsupported type is converted, together with its warning. Later
/// ones keep their number and get flush ends.
std::int32_t ReadPathType(LibraryState& state, const StreamRecord& record) {
    const std::uint16_t type = record.U16At(0);
    state.open.path.pathType = type;
    if (type == roundEnds && !state.warnedType1) {
        state.console->Write(
            L"WARNING: path type 1 (round ended) is not supported and will be converted to type 2");
        state.open.path.pathType = extendedEnds;
        state.warnedType1 = true;
    }
    if (type == variableEnds && !state.warnedType4) {
        state.console->Write(
            L"WARNING: path type 4 (variable length) is not supported and will be converted to "
            L"type 2");
        state.open.path.pathType = extendedEnds;
        state.warnedType4 = true;
    }
    return success;
}

std::int32_t ReadReferenceName(LibraryState& state, const StreamRecord& record) {
    const std::string_view name = state.names.Keep(record.Text(), state.store.names);
    (state.open.kind == Element::Sref ? state.open.sref.name : state.open.aref.name) = name;
    return success;
}

std::int32_t ReadColumnsAndRows(LibraryState& state, const StreamRecord& record) {
    state.open.aref.columns = record.U16At(0);
    state.open.aref.rows = record.U16At(2);
    return success;
}

std::int32_t ReadTransformFlags(LibraryState& state, const StreamRecord& record) {
    if (state.open.kind == Element::Sref) {
        state.open.sref.strans = record.U16At(0);
    } else if (state.open.kind == Element::Aref) {
        state.open.aref.strans = record.U16At(0);
    }
    return success;
}

std::int32_t ReadMagnification(LibraryState& state, const StreamRecord& record) {
    const auto mag = static_cast<double>(static_cast<float>(record.RealAt(0)));
    if (state.open.kind == Element::Sref) {
        state.open.sref.mag = mag;
    } else if (state.open.kind == Element::Aref) {
        state.open.aref.mag = mag;
    }
    return success;
}

std::int32_t ReadAngle(LibraryState& state, const StreamRecord& record) {
    const double radians = record.RealAt(0) * 3.141592653589793 / 180.0;
    const auto angle = static_cast<double>(static_cast<float>(radians));
    if (state.open.kind == Element::Sref) {
        state.open.sref.angle = angle;
    } else if (state.open.kind == Element::Aref) {
        state.open.aref.angle = angle;
    }
    return success;
}

// Points

std::size_t PointCount(const StreamRecord& record) {
    return record.data.size() / 8;
}

template <typename Point>
void CopyPoints(Point* points, const StreamRecord& record) {
    const std::uint8_t* bytes = record.data.data();
    for (const Point* end = points + PointCount(record); points != end; ++points, bytes += 8) {
        *points = {StreamI32(bytes), StreamI32(bytes + 4)};
    }
}

/// Makes the record's points those of a polygon. False if it had points before.
bool ReadPolygon(GdsBoundary& boundary, const StreamRecord& record, ElementStore& store) {
    if (!boundary.points.empty()) {
        return false;
    }
    const std::span<NarrowPoint> points = store.narrowPoints.Take(PointCount(record));
    CopyPoints(points.data(), record);
    boundary.points = points;
    return true;
}

/// The same for a path, whose points do not stay.
bool ReadCentreLine(CentreLine& path, const StreamRecord& record) {
    if (!path.points.empty()) {
        return false;
    }
    path.points.resize(PointCount(record));
    CopyPoints(path.points.data(), record);
    return true;
}

bool ReadOrigin(GdsSref& sref, const StreamRecord& record) {
    if (PointCount(record) != 1) {
        return false;
    }
    CopyPoints(&sref.origin, record);
    return true;
}

bool ReadLattice(GdsAref& aref, const StreamRecord& record, ElementStore& store) {
    if (!aref.points.empty() || PointCount(record) != 3) {
        return false;
    }
    const std::span<GdsPoint> points = store.points.Take(3);
    CopyPoints(points.data(), record);
    aref.points = points;
    return true;
}

std::int32_t ReadPoints(LibraryState& state, const StreamRecord& record) {
    bool accepted = true;
    switch (state.open.kind) {
        case Element::Boundary:
            accepted = ReadPolygon(state.open.boundary, record, state.store);
            break;
        case Element::Path:
            accepted = ReadCentreLine(state.open.path, record);
            break;
        case Element::Sref:
            accepted = ReadOrigin(state.open.sref, record);
            break;
        case Element::Aref:
            accepted = ReadLattice(state.open.aref, record, state.store);
            break;
        default:
            break;
    }
    return accepted ? success : wrongPointCount;
}

// The end of an element

/// Adds a polygon to the cell. Its box is measured here, while the points are still at hand in the
/// processor.
void AddBoundary(LibraryState& state, GdsBoundary boundary) {
    MeasureBoundary(boundary);
    state.flatSeen = state.flatSeen || boundary.points.empty() || SmallerSide(boundary.bounds) == 0;
    state.cell.boundaries.push_back(boundary);
}

std::int32_t EndBoundary(LibraryState& state) {
    if (!std::exchange(state.open.layerSeen, false)) {
        return layerMissing;
    }
    AddBoundary(state, std::exchange(state.open.boundary, GdsBoundary()));
    return success;
}

bool FitsNarrow(GdsPoint point) {
    return point.x == static_cast<std::int32_t>(point.x) &&
           point.y == static_cast<std::int32_t>(point.y);
}

/// An outline as the points of a polygon.
PointRun KeepOutline(std::span<const GdsPoint> outline, ElementStore& store) {
    if (!std::all_of(outline.begin(), outline.end(), FitsNarrow)) {
        return store.points.Keep(outline);
    }
    const std::span<NarrowPoint> points = store.narrowPoints.Take(outline.size());
    std::transform(outline.begin(), outline.end(), points.begin(), [](GdsPoint point) {
        return NarrowPoint{static_cast<std::int32_t>(point.x), static_cast<std::int32_t>(point.y)};
    });
    return points;
}

std::int32_t EndPath(LibraryState& state) {
    if (!std::exchange(state.open.layerSeen, false)) {
        return layerMissing;
    }
    CentreLine& path = state.open.path;
    if (path.points.empty()) {
        throw std::out_of_range("invalid vector subscript");
    }
    path.outline.resize(2 * path.points.size() + 1);
    const auto count = static_cast<std::int32_t>(path.points.size());
    if (ExpandPath(path.outline.data(), path.points.data(), count, path.width, path.pathType) !=
        0) {
        return pathRefused;
    }
    AddBoundary(state, {path.layer, KeepOutline(path.outline, state.store), GdsRect()});
    path.points.clear();  // and keeps their room for the next path
    path.layer = 0;
    path.pathType = 0;
    path.width = 0;
    return success;
}

std::int32_t EndElement(LibraryState& state, const StreamRecord&) {
    std::int32_t result = success;
    switch (std::exchange(state.open.kind, Element::None)) {
        case Element::Boundary:
            result = EndBoundary(state);
            break;
        case Element::Path:
            result = EndPath(state);
            break;
        case Element::Sref:
            state.cell.srefs.push_back(std::exchange(state.open.sref, GdsSref()));
            break;
        case Element::Aref:
            state.cell.arefs.push_back(std::exchange(state.open.aref, GdsAref()));
            break;
        default:
            break;
    }
    return result;
}

// The state machine

using ElementSet = unsigned;

template <typename... Elements>
constexpr ElementSet Set(Elements... elements) {
    return ((1u << static_cast<unsigned>(elements)) | ...);
}

constexpr ElementSet none = Set(Element::None);
constexpr ElementSet polygons = Set(Element::Boundary, Element::Path);
constexpr ElementSet references = Set(Element::Sref, Element::Aref);
constexpr ElementSet text = Set(Element::Text);
constexpr ElementSet open = polygons | references | Set(Element::Text, Element::Node, Element::Box);
constexpr ElementSet any = none | open;

enum class Place { Anywhere, Inside, Outside };

/// Where a record is accepted: while one of `elements` is open, at this place relative to the
/// structures. Elsewhere it ends the reading with the code `refusal`.
struct RecordRule {
    std::uint16_t code;
    ElementSet elements;
    Place structure;
    std::int32_t refusal;
    std::int32_t (*handle)(LibraryState&, const StreamRecord&);
};

constexpr std::int32_t never = 0;  // accepted everywhere

/// Records that are not here are skipped.
constexpr std::array recordRules = {
    RecordRule{0x0002, any, Place::Anywhere, never, ReadHeader},
    RecordRule{0x0305, any, Place::Anywhere, never, ReadUnits},
    RecordRule{endLibraryCode, any, Place::Anywhere, never, EndLibrary},
    RecordRule{0x0502, any, Place::Outside, 6, BeginStructure},
    RecordRule{0x0606, any, Place::Inside, 27, ReadStructureName},
    RecordRule{endStructureCode, any, Place::Inside, 7, EndStructure},
    RecordRule{0x0800, none, Place::Inside, 8, BeginElement<Element::Boundary>},
    RecordRule{0x0900, none, Place::Inside, 9, BeginElement<Element::Path>},
    RecordRule{0x0A00, none, Place::Inside, 10, BeginSref},
    RecordRule{0x0B00, none, Place::Inside, 11, BeginAref},
    RecordRule{0x0C00, none, Place::Inside, 12, BeginElement<Element::Text>},
    RecordRule{0x0D02, open & ~references, Place::Anywhere, 25, ReadLayer},
    RecordRule{0x0F03, Set(Element::Path) | text, Place::Anywhere, 26, ReadWidth},
    RecordRule{0x1003, open, Place::Anywhere, wrongPointCount, ReadPoints},
    RecordRule{endElementCode, open, Place::Inside, 15, EndElement},
    RecordRule{0x1206, references, Place::Anywhere, 16, ReadReferenceName},
    RecordRule{0x1302, Set(Element::Aref), Place::Anywhere, 17, ReadColumnsAndRows},
    RecordRule{0x1500, none, Place::Inside, 13, BeginElement<Element::Node>},
    RecordRule{0x1A01, references | text, Place::Anywhere, 19, ReadTransformFlags},
    RecordRule{0x1B05, references | text, Place::Anywhere, 21, ReadMagnification},
    RecordRule{0x1C05, references | text, Place::Anywhere, 20, ReadAngle},
    RecordRule{pathTypeCode, Set(Element::Path), Place::Anywhere, 18, ReadPathType},
    RecordRule{0x2D00, none, Place::Inside, 14, BeginElement<Element::Box>},
};

/// For each record type, the high byte of the codes, its place in the table plus one, or 0.
constexpr std::array<std::uint8_t, 256> rulePlaces = [] {
    std::array<std::uint8_t, 256> places = {};
    for (std::size_t i = 0; i < recordRules.size(); ++i) {
        places[recordRules[i].code >> 8] = static_cast<std::uint8_t>(i + 1);
    }
    return places;
}();

bool IsAccepted(const RecordRule& rule, const LibraryState& state) {
    const bool elementFits = (rule.elements & Set(state.open.kind)) != 0;
    const bool placeFits =
        rule.structure == Place::Anywhere || (rule.structure == Place::Inside) == state.inStructure;
    return elementFits && placeFits;
}

}  // namespace

void CompleteCell(LibraryState& state) {
    GdsCell cell;
    cell.name = state.cell.name.value_or("");
    cell.boundaries = state.store.boundaries.KeepAll(state.cell.boundaries);
    cell.srefs = state.store.srefs.KeepAll(state.cell.srefs);
    cell.arefs = state.store.arefs.KeepAll(state.cell.arefs);
    state.cell.name.reset();
    state.cells.push_back(std::move(cell));
}

std::int32_t HandleRecord(LibraryState& state, const StreamRecord& record) {
    const std::size_t place = rulePlaces[record.code >> 8];
    if (place == 0 || recordRules[place - 1].code != record.code) {
        return success;
    }
    const RecordRule& rule = recordRules[place - 1];
    return IsAccepted(rule, state) ? rule.handle(state, record) : rule.refusal;
}

}  // namespace zelmo
