#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "gds/gds_database.h"
#include "gds/name_cache.h"
#include "gds/stream_records.h"

namespace zelmo {

class LogConsole;

/// The element that is being read.
enum class Element { None, Boundary, Path, Sref, Aref, Text, Node, Box };

/// A path before it is expanded.
struct CentreLine {
    std::uint16_t layer = 0;
    std::uint16_t pathType = 0;
    std::uint32_t width = 0;
    std::vector<GdsPoint> points;
    std::vector<GdsPoint> outline;  ///< room for it
};

/// The structure that is being read.
struct OpenCell {
    std::string_view name;
    GrowingArray<GdsBoundary> boundaries;
    GrowingArray<GdsSref> srefs;
    GrowingArray<GdsAref> arefs;
};

/// What is known between two records.
struct LibraryState {
    GdsDatabase& database;
    LogConsole* console;
    Element element = Element::None;
    bool inStructure = false;
    bool layerSeen = false;  ///< in the open boundary or path
    bool warnedType1 = false;
    bool warnedType4 = false;
    bool endSeen = false;
    bool flatSeen = false;  ///< a polygon without points, width or height
    OpenCell cell = {};
    GdsBoundary boundary = {};
    GdsSref sref = {};
    GdsAref aref = {};
    CentreLine path = {};
    NameCache names = {};
};

/// Takes the next record of a library. Returns 0, or the code of the error. Throws
/// std::out_of_range("invalid vector subscript") at the end of a path without points.
std::int32_t HandleRecord(LibraryState& state, const StreamRecord& record);

}  // namespace zelmo
