#include "gds/polygon_extraction.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "gds/gds_database.h"
#include "gds/polygon_selection.h"

namespace zelmo {

namespace {

const GdsCell* FindCell(const GdsDatabase& database, std::string_view name) {
    const auto found =
        std::find_if(database.cells.begin(), database.cells.end(),
                     [&](const GdsCell& cell) { return NameText(cell.name) == NameText(name); });
    return found == database.cells.end() ? nullptr : &*found;
}

std::uint64_t ElementCount(const GdsDatabase& database) {
    const auto add = [](std::uint64_t count, const GdsCell& cell) {
        return count + cell.boundaries.size() + cell.srefs.size() + cell.arefs.size();
    };
    return std::accumulate(database.cells.begin(), database.cells.end(), std::uint64_t{0}, add);
}

}  // namespace

std::size_t PointLimit(std::uint64_t memory) {
    constexpr std::uint64_t always = 100000000;
    return static_cast<std::size_t>(std::max(always, memory / 2 / sizeof(GdsPoint)));
}

PolygonExtraction ExtractPolygons(const GdsDatabase& database, std::string_view cellName,
                                  const ExtractionWindow& window, ExtractionLimits limits) {
    const GdsCell* const cell = FindCell(database, cellName);
    if (cell == nullptr) {
        return {{}, 0, ExtractionRefusal::UnknownCell};
    }
    limits.fruitlessTests += ElementCount(database);
    ExtractionScope scope{window, limits};
    if (const auto refusal = CollectCellPolygons(scope, {cell, GdsTransform()})) {
        return {{}, 0, refusal};
    }
    return {std::move(scope.output), scope.skipped, std::nullopt};
}

}  // namespace zelmo
