#include "gds/record_handlers.h"

#include <cstddef>
#include <span>

namespace zelmo {

namespace {

/// A point is two numbers of 32 bits.
constexpr std::size_t pointSize = 8;

/// What is left over of the data is no point.
std::size_t PointCount(const StreamRecord& record) {
    return record.data.size() / pointSize;
}

template <typename Point>
void CopyPoints(Point* points, const StreamRecord& record) {
    const std::uint8_t* bytes = record.data.data();
    const Point* const end = points + PointCount(record);
    for (; points != end; ++points, bytes += pointSize) {
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
    constexpr std::size_t latticePoints = 3;
    if (!aref.points.empty() || PointCount(record) != latticePoints) {
        return false;
    }
    const std::span<GdsPoint> points = store.points.Take(latticePoints);
    CopyPoints(points.data(), record);
    aref.points = points;
    return true;
}

/// Of a text nothing is refused; the first point is its place.
void ReadPlace(GdsText& text, const StreamRecord& record) {
    if (!text.placed && PointCount(record) != 0) {
        text.origin = {StreamI32(record.data.data()), StreamI32(record.data.data() + 4)};
        text.placed = true;
    }
}

}  // namespace

Refusal ReadPoints(LibraryState& state, const StreamRecord& record) {
    bool fits = true;
    switch (state.open.kind) {
        case Element::Boundary:
            fits = ReadPolygon(state.open.boundary, record, state.store);
            break;
        case Element::Path:
            fits = ReadCentreLine(state.open.path, record);
            break;
        case Element::Sref:
            fits = ReadOrigin(state.open.sref, record);
            break;
        case Element::Aref:
            fits = ReadLattice(state.open.aref, record, state.store);
            break;
        case Element::Text:
            ReadPlace(state.open.text, record);
            break;
        case Element::None:
        case Element::Node:
        case Element::Box:
            break;
    }
    return fits ? accepted : Refusal(LayoutErrorKind::BadPoints);
}

}  // namespace zelmo
