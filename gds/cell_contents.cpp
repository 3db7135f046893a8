#include <optional>
#include <unordered_map>
#include <utility>

#include "gds/cell_order.h"
#include "gds/layout_contents.h"
#include "gds/placed_boxes.h"
#include "gds/placement_key.h"

namespace zelmo {

namespace {

/// Cells under the linear parts of placements, each with the box of all shapes in it, relative to
/// the placement's offset.
class BoxTable {
public:
    explicit BoxTable(const ContentLimits& limits) : limits_(limits) {}

    /// None where there were too many turns. References of the cell lead in no circle.
    std::optional<GdsRect> Of(const GdsCell& cell) {
        const PlacementKey wanted = LinearKeyOf(cell, {});
        if (const auto found = boxes_.find(wanted); found != boxes_.end()) {
            return found->second;
        }
        std::vector<Visit> path;
        path.push_back(BeginVisit(wanted));
        while (!path.empty()) {
            if (boxes_.size() > limits_.turns || turnedElements_ > limits_.turnedElements) {
                return std::nullopt;
            }
            Visit& visit = path.back();
            while (visit.next < visit.children.size() &&
                   boxes_.contains(visit.children[visit.next].key)) {
                ++visit.next;
            }
            if (visit.next < visit.children.size()) {
                path.push_back(BeginVisit(visit.children[visit.next].key));
            } else {
                boxes_.emplace(visit.key, WorkOut(visit));
                path.pop_back();
            }
        }
        return boxes_.at(wanted);
    }

private:
    struct Child {
        PlacementKey key;  ///< without offset
        GdsRect offsets;
    };
    struct Visit {
        PlacementKey key;
        std::vector<Child> children;
        std::size_t next = 0;  ///< the first child whose box may be missing
    };

    Visit BeginVisit(const PlacementKey& key) {
        Visit visit{key, {}, 0};
        const GdsTransform transform = TransformOf(key);
        const LinearPart linear = LinearPartOf(transform);
        const auto add = [&](const auto& reference, const GdsRect& offsets) {
            const GdsTransform child =
                PlaceChild({}, reference.mag, reference.angle, reference.strans, transform, linear);
            visit.children.push_back({LinearKeyOf(*reference.cell, child), offsets});
        };
        for (const GdsSref& sref : key.cell->srefs) {
            const GdsPoint offset = TurnPoint(sref.origin, linear);
            if (sref.cell != nullptr) {
                add(sref, {offset.x, offset.y, offset.x, offset.y});
            }
        }
        for (const GdsAref& aref : key.cell->arefs) {
            if (aref.cell != nullptr && InstancesOf(aref) != 0) {
                add(aref, OffsetsOf(aref, transform, linear));
            }
        }
        return visit;
    }

    GdsRect WorkOut(const Visit& visit) {
        const GdsCell& cell = *visit.key.cell;
        const GdsTransform transform = TransformOf(visit.key);
        const LinearPart linear = LinearPartOf(transform);
        GdsRect box;
        for (const GdsBoundary& boundary : cell.boundaries) {
            WidenByShape(box, boundary, linear, {0, 0, 0, 0});
        }
        for (const Child& child : visit.children) {
            const GdsRect& below = boxes_.at(child.key);
            if (!IsNothing(below)) {
                MergeRect(box, MoveRect(below, child.offsets));
            }
        }
        if (visit.key != LinearKeyOf(cell, {})) {
            turnedElements_ += cell.boundaries.size() + visit.children.size();
        }
        return box;
    }

    ContentLimits limits_;
    std::uint64_t turnedElements_ = 0;
    std::unordered_map<PlacementKey, GdsRect, PlacementKeyHash> boxes_;
};

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
    BoxTable boxes(limits);
    for (const std::size_t number : order.childrenFirst) {
        CellContents& cell = contents[number];
        AddChildren(contents, database, number);
        const std::optional<GdsRect> box =
            cell.isEndless ? std::nullopt : boxes.Of(database.cells[number]);
        cell.hasBox = box.has_value();
        cell.box = box.value_or(GdsRect());
    }
    return contents;
}

}  // namespace zelmo
