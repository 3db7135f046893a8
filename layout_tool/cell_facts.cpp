#include "layout_tool/cell_facts.h"

#include <algorithm>
#include <tuple>

namespace zelmo {

namespace {

std::vector<ContainedCell> FindUses(const LayoutReading& reading, std::size_t cell) {
    std::vector<ContainedCell> uses;
    for (const std::size_t parent : ListedCells(reading)) {
        for (const ContainedCell& child : reading.contained[parent]) {
            if (child.cell == cell) {
                uses.push_back({parent, child.times});
            }
        }
    }
    return uses;
}

}  // namespace

CellFacts FindCellFacts(const LayoutReading& reading, std::size_t cell, std::size_t mostTexts) {
    CellFacts facts;
    facts.cell = cell;
    facts.layers = CountLayers(reading.database, cell);
    facts.texts = FindTexts(reading.database, cell, mostTexts);
    std::sort(facts.texts.begin(), facts.texts.end(), [](const auto& a, const auto& b) {
        const auto key = [](const PlacedText& text) {
            return std::tuple(text.layer, text.texttype, text.string, text.place.x, text.place.y);
        };
        return key(a) < key(b);
    });
    facts.usedIn = FindUses(reading, cell);
    return facts;
}

}  // namespace zelmo
