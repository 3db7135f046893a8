#include "layout_tool/cell_names.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <vector>

#include "base/nearest_name.h"
#include "layout_tool/shown_text.h"

namespace zelmo {

std::optional<std::size_t> FindCell(const LayoutReading& reading, std::string_view name) {
    const auto& cells = reading.database.cells;
    const auto* const found = std::find_if(cells.begin(), cells.end(), [&](const GdsCell& cell) {
        return NameText(cell.name) == name;
    });
    return found == cells.end() ? std::nullopt
                                : std::optional(static_cast<std::size_t>(found - cells.begin()));
}

std::string NearestCells(const LayoutReading& reading, std::string_view name,
                         std::span<const std::size_t> cells) {
    constexpr int most = 3;
    std::vector<std::string_view> known;
    for (const std::size_t cell : cells) {
        if (!reading.isAgain[cell]) {
            known.push_back(NameText(reading.database.cells[cell].name));
        }
    }
    std::vector<std::string> nearest;
    for (int i = 0; i < most; ++i) {
        const std::string_view next = NearestName(name, known);
        if (next.empty()) {
            break;
        }
        nearest.push_back(fmt::format("\"{}\"", ShownText(next)));
        std::erase(known, next);
    }
    const char* const words = nearest.size() == 1 ? "; the nearest is " : "; the nearest are ";
    return nearest.empty() ? "" : fmt::format("{}{}", words, fmt::join(nearest, ", "));
}

}  // namespace zelmo
