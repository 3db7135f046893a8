#include "gds/first_boxes.h"

#include <cstdint>
#include <tuple>
#include <utility>
#include <vector>

#include "gds/array_lattice.h"
#include "gds/placed_references.h"

namespace zelmo {

bool IsBefore(const GdsRect& a, const GdsRect& b) {
    return std::tie(a.ymin, a.xmin, a.ymax, a.xmax) < std::tie(b.ymin, b.xmin, b.ymax, b.xmax);
}

GdsRect MoveBy(const GdsRect& box, GdsPoint offset) {
    return MoveRect(box, {offset.x, offset.y, offset.x, offset.y});
}

BoxesOfCell::BoxesOfCell(const GdsDatabase& database, const CellOrder& order, std::size_t cell,
                         const PlaceLimits& limits)
    : boxes_(database, {limits.turns, limits.steps}), cell_(cell) {
    std::vector<bool> isNeeded(database.cells.size(), false);
    isNeeded[cell] = true;
    const auto& all = order.childrenFirst;
    for (auto number = all.rbegin(); number != all.rend(); ++number) {
        const GdsCell& next = database.cells[*number];
        for (std::size_t i = 0; isNeeded[*number] && i < ReferenceCount(next); ++i) {
            if (const GdsCell* const child = ReferenceAt(next, i).cell; child != nullptr) {
                isNeeded[static_cast<std::size_t>(child - database.cells.begin())] = true;
            }
        }
    }
    for (const std::size_t number : all) {
        if (isNeeded[number]) {
            boxes_.Find(number);
        }
    }
}

std::optional<GdsRect> BoxesOfCell::Under(const GdsTransform& transform) {
    return boxes_.FindTurned(cell_, transform);
}

namespace {

/// Works out first boxes, children first.
class FirstBoxSearch {
public:
    FirstBoxSearch(const PlaceCounts& counts, BoxesOfCell& boxes, const GdsCell& target,
                   const PlaceLimits& limits)
        : counts_(counts), boxes_(boxes), target_(target), limits_(limits) {}

    /// Those of a cell as it is drawn and of all in it that leads to the target, or none where
    /// there are too many.
    std::optional<FirstBoxes> From(const GdsCell& start) {
        path_.push_back({LinearKeyOf(start, {})});
        while (!path_.empty()) {
            if (steps_ > limits_.steps || firsts_.size() > limits_.turns) {
                return std::nullopt;
            }
            if (const std::optional<PlacementKey> missing = MissingChild(path_.back())) {
                path_.push_back({*missing});
                continue;
            }
            const std::optional<GdsRect> box = WorkOut(path_.back().key);
            if (!box) {
                return std::nullopt;
            }
            firsts_.emplace(path_.back().key, *box);
            path_.pop_back();
        }
        return std::move(firsts_);
    }

private:
    struct Visit {
        PlacementKey key;
        std::size_t next = 0;  ///< the first reference whose first box may be missing
    };

    std::optional<PlacementKey> MissingChild(Visit& visit) {
        const GdsCell& cell = *visit.key.cell;
        const GdsTransform transform = TransformOf(visit.key);
        const LinearPart linear = LinearPartOf(transform);
        for (; &cell != &target_ && visit.next < ReferenceCount(cell); ++visit.next, ++steps_) {
            const PlacedReference reference = ReferenceAt(cell, visit.next);
            if (!counts_.Leads(reference)) {
                continue;
            }
            const PlacementKey key = ChildKey(reference, transform, linear);
            if (!firsts_.contains(key)) {
                return key;
            }
        }
        return std::nullopt;
    }

    std::optional<GdsRect> WorkOut(const PlacementKey& key) {
        const GdsTransform transform = TransformOf(key);
        if (key.cell == &target_) {
            return boxes_.Under(transform);
        }
        const LinearPart linear = LinearPartOf(transform);
        std::optional<GdsRect> first;
        for (std::size_t i = 0; i < ReferenceCount(*key.cell); ++i) {
            const PlacedReference reference = ReferenceAt(*key.cell, i);
            if (!counts_.Leads(reference)) {
                continue;
            }
            const GdsPoint offset =
                reference.array == nullptr
                    ? TurnPoint(reference.origin, linear)
                    : LeastOffset(*reference.array, WholeBlock(*reference.array), transform,
                                  linear);
            const GdsRect box = MoveBy(firsts_.at(ChildKey(reference, transform, linear)), offset);
            if (!first || IsBefore(box, *first)) {
                first = box;
            }
        }
        return first;
    }

    const PlaceCounts& counts_;
    BoxesOfCell& boxes_;
    const GdsCell& target_;
    PlaceLimits limits_;
    FirstBoxes firsts_;
    std::vector<Visit> path_;
    std::uint64_t steps_ = 0;
};

}  // namespace

std::optional<FirstBoxes> FindFirstBoxes(const PlaceCounts& counts, BoxesOfCell& boxes,
                                         const GdsCell& start, const GdsCell& target,
                                         const PlaceLimits& limits) {
    return FirstBoxSearch(counts, boxes, target, limits).From(start);
}

}  // namespace zelmo
