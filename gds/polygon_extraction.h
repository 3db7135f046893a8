#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "base/physical_memory.h"
#include "gds/gds_point.h"

// From a database to the polygons of a cell in a rectangle, as plain values.

namespace zelmo {

struct GdsDatabase;

/// A polygon of the layout, in database units from the lower left corner of the rectangle that it
/// was selected for. It is kept whole, also where it reaches out of there.
struct RawPolygon {
    std::vector<GdsPoint> points;
    std::uint16_t layer = 0;
    std::uint16_t datatype = 0;
};

/// What an extraction selects: polygons whose boxes, placed in the cell, overlap the rectangle and
/// are not lower or narrower than the least size. In database units.
struct ExtractionWindow {
    std::int64_t x0 = 0;
    std::int64_t y0 = 0;
    std::int64_t x1 = 0;
    std::int64_t y1 = 0;
    std::int64_t minSize = 0;
};

/// The points that the polygons of an extraction may have on a machine with so many bytes of
/// memory: as many as fill half of it, but never fewer than 100,000,000.
std::size_t PointLimit(std::uint64_t memory);

/// How far an extraction goes.
struct ExtractionLimits {
    /// It ends as soon as it has so many polygons.
    std::size_t polygons = 10000000;
    /// It ends as soon as they have more points than this, which no memory would hold: a small file
    /// can ask for 10,000,000 polygons of 16,383 points each, and a system that gives out more
    /// memory than it has ends the program without a word.
    std::size_t points = PointLimit(PhysicalMemory());
    /// It ends when so many tests of placements and polygons, one after the other, have selected
    /// nothing. What leads to polygons counts for nothing, so no search that gets on is ended: only
    /// those that would take forever, as hierarchies hold more placements than anyone could test,
    /// and no rule tells of all of them in advance whether they select something.
    std::uint64_t fruitlessTests = 500000000;
    /// After so many visits of cells, those that would select nothing are told in advance where
    /// there is a rule.
    std::size_t patience = 50000;
};

/// Why there are no polygons.
enum class ExtractionRefusal { UnknownCell, TooManyPolygons, TooManyPoints, FruitlessSearch };

struct PolygonExtraction {
    std::vector<RawPolygon> polygons;
    std::uint64_t skipped = 0;  ///< polygons that overlap the rectangle, but are too small
    std::optional<ExtractionRefusal> refusal;
};

/// The polygons of the first cell of that name and of all below it, depth first: a cell's own ones,
/// then those of its references, then those of its arrays column by column. Each element of the
/// database may be tested once beyond the limit of fruitless tests. Throws
/// std::out_of_range("invalid vector subscript") if an array has no points.
PolygonExtraction ExtractPolygons(const GdsDatabase& database, std::string_view cellName,
                                  const ExtractionWindow& window, ExtractionLimits limits = {});

}  // namespace zelmo
