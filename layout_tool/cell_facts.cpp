#include "layout_tool/cell_facts.h"

#include <algorithm>
#include <tuple>
#include <utility>

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

bool IsChosen(const CellFacts& facts, std::uint16_t layer, std::uint16_t datatype) {
    return facts.only.empty() || IsPartOf(facts.only, layer, datatype);
}

/// Takes the chosen ones of all layers of the cell.
void TakeLayers(CellFacts& facts, const CellLayers& all) {
    std::size_t withShapes = 0;
    facts.layers.haveBoxes = all.haveBoxes;
    for (const LayerContents& layer : all.layers) {
        const std::size_t number = withShapes;
        withShapes += layer.shapes != FlatCount() ? 1 : 0;
        if (IsChosen(facts, layer.layer, layer.datatype)) {
            facts.allTexts = facts.allTexts + layer.texts;
            facts.numbers.push_back(number);
            facts.layers.layers.push_back(layer);
        }
    }
}

}  // namespace

CellFacts FindCellFacts(const LayoutReading& reading, std::size_t cell, std::size_t mostTexts) {
    return FindCellFacts(reading, cell, mostTexts, CountLayers(reading.database, cell), {});
}

CellFacts FindCellFacts(const LayoutReading& reading, std::size_t cell, std::size_t mostTexts,
                        const CellLayers& layers, std::vector<MaskLayer> only) {
    CellFacts facts;
    facts.cell = cell;
    facts.only = std::move(only);
    TakeLayers(facts, layers);
    if (facts.only.empty()) {
        facts.allTexts = reading.cells[cell].texts;
    }
    facts.texts = FindTexts(reading.database, cell, mostTexts, [&](const GdsText& text) {
        return IsChosen(facts, text.layer, text.texttype);
    });
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
