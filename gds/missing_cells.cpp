#include "gds/missing_cells.h"

#include <algorithm>
#include <cstddef>
#include <span>
#include <string_view>
#include <unordered_set>

#include "gds/gds_database.h"
#include "gds/layout_repairs.h"

namespace zelmo {

namespace {

using CellNames = std::unordered_set<std::string_view>;

template <typename Reference>
void SkipMissing(std::span<Reference>& references, const CellNames& names, LayoutRepairs& repairs) {
    const auto isMissing = [&](const Reference& reference) {
        if (names.contains(NameText(reference.name))) {
            return false;
        }
        if (repairs.missingCells++ == 0) {
            repairs.firstMissingCell = NameText(reference.name);
        }
        return true;
    };
    const auto end = std::remove_if(references.begin(), references.end(), isMissing);
    references = references.first(static_cast<std::size_t>(end - references.begin()));
}

}  // namespace

void SkipMissingCells(GdsDatabase& database, LayoutRepairs& repairs) {
    CellNames names;
    for (const GdsCell& cell : database.cells) {
        names.insert(NameText(cell.name));
    }
    for (GdsCell& cell : database.cells) {
        SkipMissing(cell.srefs, names, repairs);
        SkipMissing(cell.arefs, names, repairs);
    }
}

}  // namespace zelmo
