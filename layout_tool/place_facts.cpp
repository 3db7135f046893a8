#include "layout_tool/place_facts.h"

#include <fmt/format.h>

#include <optional>
#include <utility>
#include <vector>

#include "command_line/reasons.h"
#include "layout_tool/cell_names.h"
#include "layout_tool/lengths.h"
#include "layout_tool/shown_text.h"

namespace zelmo {

namespace {

/// The most boxes that a table and that data have.
constexpr std::size_t mostInTable = 100;
constexpr std::size_t mostInData = 10000;

/// The cells that are placed in a cell, at any depth, each once.
std::vector<std::size_t> CellsIn(const LayoutReading& reading, std::size_t start) {
    std::vector<std::size_t> cells{start};
    std::vector<bool> isSeen(reading.cells.size(), false);
    for (std::size_t i = 0; i < cells.size(); ++i) {
        for (const ContainedCell& child : reading.contained[cells[i]]) {
            if (child.times != 0 && !isSeen[child.cell]) {
                isSeen[child.cell] = true;
                cells.push_back(child.cell);
            }
        }
    }
    cells.erase(cells.begin());
    return cells;
}

std::string Quoted(const LayoutReading& reading, std::size_t cell) {
    return fmt::format("\"{}\"", ShownText(NameText(reading.database.cells[cell].name)));
}

Outcome NotPlaced(const LayoutReading& reading, const LayoutToolOptions& options,
                  std::size_t within) {
    const std::vector<std::size_t> cells = CellsIn(reading, within);
    const std::string known = cells.empty() ? "; it contains no other cell"
                                            : NearestCells(reading, *options.places, cells);
    return {ExitStatus::Usage,
            fmt::format("--places: cell {} of the layout {} does not contain a cell \"{}\"{} "
                        "(without a CELL all are listed)",
                        Quoted(reading, within), TextOf(options.layout), ShownText(*options.places),
                        known)};
}

}  // namespace

Outcome ChoosePlaces(const LayoutReading& reading, const LayoutToolOptions& options,
                     CellFacts& facts) {
    if (!options.places) {
        return {};
    }
    const std::optional<std::size_t> cell = FindCell(reading, NameText(*options.places));
    if (!cell || *cell == facts.cell) {
        return NotPlaced(reading, options, facts.cell);
    }
    CellPlaces places =
        FindPlaces(reading.database, facts.cell, *cell, options.json ? mostInData : mostInTable);
    if (places.count == FlatCount()) {
        return NotPlaced(reading, options, facts.cell);
    }
    if (places.beyondLimits) {
        return {ExitStatus::Other,
                fmt::format("--places: the first of the {} places of cell {} in cell {} cannot be "
                            "found: there are too many turns or places to go through; ask for "
                            "those in a cell that contains fewer",
                            CountText(places.count), Quoted(reading, *cell),
                            Quoted(reading, facts.cell))};
    }
    facts.places = PlaceFacts{*cell, std::move(places)};
    return {};
}

}  // namespace zelmo
