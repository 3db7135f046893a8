#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

#include "gds/gds_database.h"

namespace zelmo {

/// A text as it stands in a cell that contains it, maybe through others.
struct PlacedText {
    std::uint16_t layer = 0;
    std::uint16_t texttype = 0;
    GdsPoint place;           ///< in units of the layout
    std::string_view string;  ///< up to its first NUL

    bool operator==(const PlacedText&) const = default;
};

/// The texts in a cell and in all that it contains, at most `limit` of them: a cell's own ones,
/// then those of its references, then those of its arrays column by column. Texts whose place the
/// file does not say are left out. The cell is not endless. Throws std::out_of_range("invalid
/// vector subscript") if an array has no points.
std::vector<PlacedText> FindTexts(const GdsDatabase& database, std::size_t cell, std::size_t limit);

/// The same of chosen texts alone.
std::vector<PlacedText> FindTexts(const GdsDatabase& database, std::size_t cell, std::size_t limit,
                                  const std::function<bool(const GdsText&)>& isChosen);

}  // namespace zelmo
