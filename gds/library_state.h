#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "gds/gds_database.h"
#include "gds/layout_options.h"
#include "gds/layout_repairs.h"
#include "gds/name_cache.h"
#include "gds/path_outline.h"

// What is known of a library between two of its records.

namespace zelmo {

class LogConsole;

/// The element that is being read.
enum class Element { None, Boundary, Path, Sref, Aref, Text, Node, Box };

/// A path before it is expanded.
struct CentreLine {
    std::uint16_t layer = 0;
    std::uint16_t datatype = 0;
    std::uint16_t pathType = 0;    ///< that it is expanded as
    std::uint16_t statedType = 0;  ///< that the file has
    PathExtensions extensions;     ///< these two are for repairs alone
    std::uint32_t width = 0;
    std::vector<GdsPoint> points;
    std::vector<GdsPoint> outline;  ///< room for it
};

/// What is known of an element between its records.
struct OpenElement {
    Element kind = Element::None;
    bool layerSeen = false;  ///< in a boundary or path
    GdsBoundary boundary;
    GdsSref sref;
    GdsAref aref;
    GdsText text;
    CentreLine path;  ///< its width can come from a text before
};

/// The structure that is being read.
struct OpenCell {
    std::optional<std::string_view> name;
    GrowingArray<GdsBoundary> boundaries;
    GrowingArray<GdsSref> srefs;
    GrowingArray<GdsAref> arefs;
    GrowingArray<GdsText> texts;
};

/// What a library says of itself, where it does.
struct LibraryHead {
    std::optional<std::uint16_t> version;
    std::optional<std::array<double, 2>> units;
};

struct LibraryState {
    LibraryState(ElementStore& elementStore, LogConsole* logConsole, const LayoutOptions& options)
        : store(elementStore),
          console(logConsole),
          repair(options.repair),
          keepsTexts(options.texts) {}

    ElementStore& store;
    LogConsole* console;
    const bool repair;  ///< paths that would be refused
    const bool keepsTexts;
    LayoutRepairs repairs;
    LibraryHead head;
    SkippedElements skipped;
    bool inStructure = false;
    bool warnedType1 = false;
    bool warnedType4 = false;
    bool endSeen = false;
    bool flatSeen = false;          ///< a polygon without points, width or height
    GrowingArray<GdsCell> cells;    ///< that are complete
    GrowingArray<CellTexts> texts;  ///< of those
    OpenCell cell;
    OpenElement open;
    NameCache names;
    /// Whether the open cell was begun elsewhere; what is here of it then goes there in the end.
    bool continuesCell = false;
    std::optional<OpenCell> continued;
};

/// Adds the open cell to the complete ones.
void CompleteCell(LibraryState& state);

}  // namespace zelmo
