#include <optional>

#include "gds/cell_order.h"
#include "gds/layout_contents.h"
#include "gds/placed_boxes.h"
#include "gds/turned_boxes.h"

namespace zelmo {

namespace {

/// Adds up what a cell contains. The contents of its children are complete.
void AddChildren(std::vector<CellContents>& contents, const GdsDatabase& database,
                 std::size_t number) {
    const GdsCell& cell = database.cells[number];
    CellContents& sum = contents[number];
    const auto add = [&](const GdsCell* child, std::uint64_t instances) {
        sum.ownPlacements += instances;
        if (child != nullptr && !sum.isEndless) {
            const auto& below = contents[static_cast<std::size_t>(child - database.cells.begin())];
            sum.shapes = sum.shapes + CountOf(instances) * below.shapes;
            sum.texts = sum.texts + CountOf(instances) * below.texts;
        }
    };
    sum.shapes = CountOf(sum.ownShapes);
    sum.texts = CountOf(sum.ownTexts);
    for (const GdsSref& sref : cell.srefs) {
        add(sref.cell, 1);
    }
    for (const GdsAref& aref : cell.arefs) {
        add(aref.cell, InstancesOf(aref));
    }
}

}  // namespace

std::vector<CellContents> CountCells(const GdsDatabase& database, const ContentLimits& limits) {
    const CellOrder order = OrderCells(database);
    std::vector<CellContents> contents(database.cells.size());
    for (std::size_t i = 0; i < contents.size(); ++i) {
        contents[i].ownShapes = database.cells[i].boundaries.size();
        contents[i].isTop = order.isTop[i];
        contents[i].isEndless = order.isEndless[i];
    }
    for (const CellTexts& texts : database.texts) {
        contents[texts.cell].ownTexts = texts.texts.size();
    }
    TurnedBoxes boxes(database, limits);
    for (const std::size_t number : order.childrenFirst) {
        CellContents& cell = contents[number];
        AddChildren(contents, database, number);
        const std::optional<GdsRect> box = cell.isEndless ? std::nullopt : boxes.Find(number);
        cell.hasBox = box.has_value();
        cell.box = box.value_or(GdsRect());
    }
    return contents;
}

}  // namespace zelmo
