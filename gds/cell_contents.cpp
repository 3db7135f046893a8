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
/// the placement's offset. Cells as they are drawn come children first.
class BoxTable {
public:
    BoxTable(const GdsDatabase& database, const ContentLimits& limits)
        : database_(database), limits_(limits), drawn_(database.cells.size()) {}

    /// The box of a cell as it is drawn. None where there were too many turns in it or in a cell
    /// that it contains.
    const std::optional<GdsRect>& Find(std::size_t cell) {
        path_.push_back(BeginVisit(LinearKeyOf(database_.cells[cell], {})));
        while (path_.size() > 1 || path_.back().next < path_.back().turned.size()) {
            if (boxes_.size() > limits_.turns || turnedElements_ > limits_.turnedElements) {
                path_.clear();
                return drawn_[cell];
            }
            Visit& visit = path_.back();
            if (visit.next == visit.turned.size()) {
                boxes_.emplace(visit.key, WorkOut(visit));
                path_.pop_back();
            } else if (boxes_.contains(visit.turned[visit.next].key)) {
                ++visit.next;
            } else {
                path_.push_back(BeginVisit(visit.turned[visit.next].key));
            }
        }
        drawn_[cell] = WorkOut(path_.back());
        path_.clear();
        return drawn_[cell];
    }

private:
    struct Child {
        PlacementKey key;  ///< without offset
        GdsRect offsets;
    };
    struct Visit {
        PlacementKey key;
        std::vector<Child> turned;
        std::size_t next = 0;                      ///< the first child whose box may be missing
        std::optional<GdsRect> drawn = GdsRect();  ///< of all children that are not turned
    };

    std::size_t NumberOf(const GdsCell& cell) const {
        return static_cast<std::size_t>(&cell - database_.cells.begin());
    }

    void AddChild(Visit& visit, const PlacementKey& key, const GdsRect& offsets) {
        if (key != LinearKeyOf(*key.cell, {})) {
            visit.turned.push_back({key, offsets});
            return;
        }
        const std::optional<GdsRect>& below = drawn_[NumberOf(*key.cell)];
        if (!below) {
            visit.drawn.reset();
        } else if (visit.drawn && !IsNothing(*below)) {
            MergeRect(*visit.drawn, MoveRect(*below, offsets));
        }
    }

    Visit BeginVisit(const PlacementKey& key) {
        Visit visit{key, {}};
        const GdsTransform transform = TransformOf(key);
        const LinearPart linear = LinearPartOf(transform);
        const auto add = [&](const auto& reference, const GdsRect& offsets) {
            const GdsTransform child =
                PlaceChild({}, reference.mag, reference.angle, reference.strans, transform, linear);
            AddChild(visit, LinearKeyOf(*reference.cell, child), offsets);
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

    std::optional<GdsRect> WorkOut(const Visit& visit) {
        const GdsCell& cell = *visit.key.cell;
        std::optional<GdsRect> box = visit.drawn;
        for (const Child& child : visit.turned) {
            const std::optional<GdsRect>& below = boxes_.at(child.key);
            if (!below || !box) {
                box.reset();
            } else if (!IsNothing(*below)) {
                MergeRect(*box, MoveRect(*below, child.offsets));
            }
        }
        const LinearPart linear = LinearPartOf(TransformOf(visit.key));
        for (const GdsBoundary& boundary : cell.boundaries) {
            if (box) {
                WidenByShape(*box, boundary, linear, {0, 0, 0, 0});
            }
        }
        if (visit.key != LinearKeyOf(cell, {})) {
            turnedElements_ += cell.boundaries.size() + visit.turned.size();
        }
        return box;
    }

    const GdsDatabase& database_;
    ContentLimits limits_;
    std::uint64_t turnedElements_ = 0;
    std::vector<std::optional<GdsRect>> drawn_;
    std::unordered_map<PlacementKey, std::optional<GdsRect>, PlacementKeyHash> boxes_;
    std::vector<Visit> path_;
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
    BoxTable boxes(database, limits);
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
