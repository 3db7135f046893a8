#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <limits>
#include <span>
#include <string>
#include <string_view>

#include "gds/gds_point.h"
#include "gds/growing_array.h"
#include "gds/layout_repairs.h"
#include "gds/point_run.h"
#include "gds/run_pool.h"

// A loaded layout library. Coordinates are database units, angles radians. Cells and elements are
// plain records; what they are made of lies together in the database, one after the other.

namespace zelmo {

struct GdsCell;

/// An axis-aligned box. The start values are those of the empty box, which lies at the ends of the
/// range of a stream file's coordinates.
struct GdsRect {
    std::int64_t xmin = std::numeric_limits<std::int32_t>::max();
    std::int64_t ymin = std::numeric_limits<std::int32_t>::max();
    std::int64_t xmax = std::numeric_limits<std::int32_t>::min();
    std::int64_t ymax = std::numeric_limits<std::int32_t>::min();

    bool operator==(const GdsRect&) const = default;
};

/// Widens a box as far as it takes to have the point in it.
inline void WidenByPoint(GdsRect& box, GdsPoint point) {
    box.xmin = std::min<std::int64_t>(box.xmin, point.x);
    box.ymin = std::min<std::int64_t>(box.ymin, point.y);
    box.xmax = std::max<std::int64_t>(box.xmax, point.x);
    box.ymax = std::max<std::int64_t>(box.ymax, point.y);
}

/// One polygon of a cell; a path stands here too, already expanded.
struct GdsBoundary {
    std::uint16_t layer = 0;
    std::uint16_t datatype = 0;
    PointRun points;
    GdsRect bounds;
};

/// One placed cell.
struct GdsSref {
    std::uint16_t strans = 0;
    double angle = 0.0;
    double mag = 0.0;
    GdsPoint origin;
    std::string_view name;
    GdsCell* cell = nullptr;  ///< not owned
};

/// One placed array.
struct GdsAref {
    double angle = 0.0;
    double mag = 0.0;
    std::uint16_t strans = 0;
    std::int32_t columns = 0;
    std::int32_t rows = 0;
    std::span<const GdsPoint> points;  ///< origin, end of the columns, end of the rows
    std::string_view name;
    GdsCell* cell = nullptr;  ///< not owned
};

/// One text of a cell.
struct GdsText {
    std::uint16_t layer = 0;
    std::uint16_t texttype = 0;
    bool placed = false;  ///< the file says where it stands
    GdsPoint origin;
    std::string_view string;  ///< the bytes of the file; a use of them stops at their first NUL
};

/// One structure of the library. Move-only: references point to it.
struct GdsCell {
    GdsCell() = default;
    GdsCell(GdsCell&&) = default;
    GdsCell& operator=(GdsCell&&) = default;

    std::string_view name;  ///< the bytes of the file; a use of the name stops at its first NUL
    std::span<GdsBoundary> boundaries;
    std::span<GdsSref> srefs;
    std::span<GdsAref> arefs;
    GdsRect bounds;
    bool boundsValid = false;
};

/// The texts of a cell that has some.
struct CellTexts {
    std::size_t cell = 0;  ///< its number
    std::span<GdsText> texts;
};

/// Elements that no mask needs, which the reader passes.
struct SkippedElements {
    std::uint64_t texts = 0;
    std::uint64_t nodes = 0;
    std::uint64_t boxes = 0;

    bool operator==(const SkippedElements&) const = default;
};

/// How a file ends.
struct LibraryEnd {
    bool seen = false;        ///< the library's end stands there
    std::uint64_t bytes = 0;  ///< that were there, unpacked, where it does not
    bool inCell = false;      ///< a structure was open there
    std::string cell;         ///< that structure's name

    bool operator==(const LibraryEnd&) const = default;
};

/// What the cells of a library refer to.
struct ElementStore {
    RunPool<GdsBoundary> boundaries;
    RunPool<GdsSref> srefs;
    RunPool<GdsAref> arefs;
    RunPool<GdsText> texts;
    RunPool<NarrowPoint> narrowPoints;  ///< of polygons
    RunPool<GdsPoint> points;           ///< of arrays, and of polygons that leave 32 bits
    RunPool<char> names;                ///< of cells and references, and texts
};

constexpr double micronsPerMetre = 1000000.0;

struct GdsDatabase {
    std::uint16_t version = 0;
    double userUnit = 0.001;
    double metresPerUnit = 1e-9;
    double micronsPerUnit = 1e-9 * micronsPerMetre;
    GrowingArray<GdsCell> cells;
    GrowingArray<CellTexts> texts;  ///< by rising cells; none unless they were asked for
    SkippedElements skipped;
    LibraryEnd end;
    LayoutRepairs repairs;  ///< none unless they were asked for
    ElementStore store;
    std::deque<ElementStore> moreStores;  ///< of what was read at the same time
};

/// The part of a stored name or text that counts: up to its first NUL. It lies somewhere also where
/// it is empty.
std::string_view NameText(std::string_view name);

}  // namespace zelmo
