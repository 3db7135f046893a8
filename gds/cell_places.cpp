#include "gds/cell_places.h"

#include <algorithm>
#include <optional>
#include <queue>
#include <tuple>
#include <unordered_map>
#include <utility>

#include "gds/array_lattice.h"
#include "gds/cell_order.h"
#include "gds/placed_boxes.h"
#include "gds/placement_key.h"
#include "gds/turned_boxes.h"

namespace zelmo {

namespace {

/// The order of boxes. Moving two boxes alike does not change it.
bool IsBefore(const GdsRect& a, const GdsRect& b) {
    return std::tie(a.ymin, a.xmin, a.ymax, a.xmax) < std::tie(b.ymin, b.xmin, b.ymax, b.xmax);
}

GdsRect MoveBy(const GdsRect& box, GdsPoint offset) {
    return MoveRect(box, {offset.x, offset.y, offset.x, offset.y});
}

/// A reference of either kind.
struct Reference {
    const GdsCell* cell = nullptr;
    const GdsAref* array = nullptr;  ///< null: of a single instance
    GdsPoint origin;                 ///< of that one
    std::uint16_t strans = 0;
    double mag = 1.0;
    double angle = 0.0;
};

std::size_t ReferenceCount(const GdsCell& cell) {
    return cell.srefs.size() + cell.arefs.size();
}

Reference ReferenceAt(const GdsCell& cell, std::size_t index) {
    if (index < cell.srefs.size()) {
        const GdsSref& sref = cell.srefs[index];
        return {sref.cell, nullptr, sref.origin, sref.strans, sref.mag, sref.angle};
    }
    const GdsAref& aref = cell.arefs[index - cell.srefs.size()];
    return {aref.cell, &aref, {}, aref.strans, aref.mag, aref.angle};
}

/// The key of a reference's cell where the cell with the reference stands under `parent`.
PlacementKey ChildKey(const Reference& reference, const GdsTransform& parent,
                      const LinearPart& linear) {
    return LinearKeyOf(*reference.cell, PlaceChild({}, reference.mag, reference.angle,
                                                   reference.strans, parent, linear));
}

/// The least offset in x and in y that instances of a block have.
GdsPoint LeastOffset(const GdsAref& aref, const LatticeBlock& block, const GdsTransform& parent,
                     const LinearPart& linear) {
    const GdsRect offsets =
        BlockOffsets(LatticeOf(aref), PositionRule::Truncate64, block, parent, linear);
    return {offsets.xmin, offsets.ymin};
}

/// How often each cell contains the one that is looked for, which contains itself once.
class PlaceCounts {
public:
    PlaceCounts(const GdsDatabase& database, const CellOrder& order, std::size_t cell)
        : database_(database), counts_(database.cells.size()) {
        for (const std::size_t number : order.childrenFirst) {
            counts_[number] = number == cell ? CountOf(1) : CountIn(database.cells[number]);
        }
    }

    const FlatCount& Of(const GdsCell& cell) const {
        return counts_[static_cast<std::size_t>(&cell - database_.cells.begin())];
    }

    bool Leads(const Reference& reference) const {
        return reference.cell != nullptr && Of(*reference.cell) != FlatCount() &&
               (reference.array == nullptr || InstancesOf(*reference.array) != 0);
    }

private:
    FlatCount CountIn(const GdsCell& cell) const {
        FlatCount count;
        for (std::size_t i = 0; i < ReferenceCount(cell); ++i) {
            const Reference reference = ReferenceAt(cell, i);
            if (reference.cell != nullptr) {
                const std::uint64_t times =
                    reference.array == nullptr ? 1 : InstancesOf(*reference.array);
                count = count + CountOf(times) * Of(*reference.cell);
            }
        }
        return count;
    }

    const GdsDatabase& database_;
    std::vector<FlatCount> counts_;
};

/// The boxes of a cell, which may be turned.
class BoxesOfCell {
public:
    BoxesOfCell(const GdsDatabase& database, const CellOrder& order, std::size_t cell,
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

    std::optional<GdsRect> Under(const GdsTransform& transform) {
        return boxes_.FindTurned(cell_, transform);
    }

private:
    TurnedBoxes boxes_;
    std::size_t cell_;
};

/// A cell under the linear part of a placement, with a box that no box of a place in it is before.
/// Of the cell that is looked for it is its own box; otherwise only arrays that are turned can make
/// it one that no place has.
using FirstBoxes = std::unordered_map<PlacementKey, GdsRect, PlacementKeyHash>;
using FirstBox = FirstBoxes::value_type;

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
            const Reference reference = ReferenceAt(cell, visit.next);
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
            const Reference reference = ReferenceAt(*key.cell, i);
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

/// Goes down to the places whose boxes come first: always on where the next one can be, and never
/// where none is that counts any more.
class PlaceSearch {
public:
    PlaceSearch(const PlaceCounts& counts, const FirstBoxes& firsts, const GdsCell& target,
                std::size_t most, const PlaceLimits& limits)
        : counts_(counts), firsts_(firsts), target_(target), most_(most), limits_(limits) {}

    /// The boxes in their order, or none where the limits are too close.
    std::optional<std::vector<GdsRect>> From(const GdsCell& start) {
        PushCell(*firsts_.find(LinearKeyOf(start, {})), {});
        while (!waiting_.empty() && Counts(waiting_.top().bound)) {
            if (++steps_ > limits_.steps || isFull_) {
                return std::nullopt;
            }
            const Node node = waiting_.top();
            waiting_.pop();
            if (node.array == nullptr) {
                EnterCell(node);
            } else {
                DivideBlock(node);
            }
        }
        if (isFull_) {
            return std::nullopt;
        }
        std::sort(found_.begin(), found_.end(), IsBefore);
        return std::move(found_);
    }

private:
    /// A cell at a place, or a block of instances of an array in it.
    struct Node {
        GdsRect bound;  ///< no box of a place in it is before this one
        std::uint64_t number = 0;
        const FirstBox* cell = nullptr;
        GdsPoint offset;                 ///< of the cell
        const GdsAref* array = nullptr;  ///< null: all of the cell
        const FirstBox* child = nullptr;
        LatticeBlock block;
    };

    /// Of equals the latest comes first, which goes down rather than across.
    struct ComesLater {
        bool operator()(const Node& a, const Node& b) const {
            return IsBefore(b.bound, a.bound) ||
                   (!IsBefore(a.bound, b.bound) && a.number < b.number);
        }
    };

    static GdsTransform Placement(const FirstBox& cell, GdsPoint offset) {
        GdsTransform transform = TransformOf(cell.first);
        transform.dx = offset.x;
        transform.dy = offset.y;
        return transform;
    }

    bool Counts(const GdsRect& bound) const {
        return most_ != 0 && (found_.size() < most_ || IsBefore(bound, found_.front()));
    }

    /// Keeps the first boxes, with the last of them in front.
    void Keep(const GdsRect& box) {
        if (found_.size() == most_) {
            std::pop_heap(found_.begin(), found_.end(), IsBefore);
            found_.pop_back();
        }
        found_.push_back(box);
        std::push_heap(found_.begin(), found_.end(), IsBefore);
    }

    void Push(Node node) {
        if (!Counts(node.bound)) {
            return;
        }
        isFull_ = isFull_ || waiting_.size() == limits_.waiting;
        if (!isFull_) {
            node.number = ++pushed_;
            waiting_.push(node);
        }
    }

    void PushCell(const FirstBox& cell, GdsPoint offset) {
        const GdsRect bound = MoveBy(cell.second, offset);
        if (cell.first.cell != &target_) {
            Push({bound, 0, &cell, offset, nullptr, nullptr, {}});
        } else if (Counts(bound)) {
            Keep(bound);
        }
    }

    void PushBlock(Node node, const LatticeBlock& block, const LinearPart& linear) {
        const GdsTransform parent = Placement(*node.cell, node.offset);
        const GdsPoint least = LeastOffset(*node.array, block, parent, linear);
        if (block.InstanceCount() == 1) {
            PushCell(*node.child, least);
            return;
        }
        node.bound = MoveBy(node.child->second, least);
        node.block = block;
        Push(node);
    }

    void EnterCell(const Node& node) {
        const GdsTransform transform = Placement(*node.cell, node.offset);
        const LinearPart linear = LinearPartOf(transform);
        const GdsCell& cell = *node.cell->first.cell;
        for (std::size_t i = 0; i < ReferenceCount(cell); ++i) {
            const Reference reference = ReferenceAt(cell, i);
            if (!counts_.Leads(reference)) {
                continue;
            }
            const FirstBox& child = *firsts_.find(ChildKey(reference, transform, linear));
            if (reference.array == nullptr) {
                PushCell(child, PlacePoint(reference.origin, transform, linear));
            } else {
                PushBlock({{}, 0, node.cell, node.offset, reference.array, &child, {}},
                          WholeBlock(*reference.array), linear);
            }
        }
        steps_ += ReferenceCount(cell);
    }

    void DivideBlock(const Node& node) {
        const LinearPart linear = LinearPartOf(TransformOf(node.cell->first));
        const LatticeBlock& block = node.block;
        const bool isWide = block.lastColumn - block.firstColumn > block.lastRow - block.firstRow;
        const BlockHalves halves = isWide ? SplitColumns(block) : SplitRows(block);
        PushBlock(node, halves.first, linear);
        PushBlock(node, halves.second, linear);
    }

    const PlaceCounts& counts_;
    const FirstBoxes& firsts_;
    const GdsCell& target_;
    std::size_t most_;
    PlaceLimits limits_;
    std::priority_queue<Node, std::vector<Node>, ComesLater> waiting_;
    bool isFull_ = false;  ///< something was left out for want of room
    std::vector<GdsRect> found_;
    std::uint64_t pushed_ = 0;
    std::uint64_t steps_ = 0;
};

}  // namespace

CellPlaces FindPlaces(const GdsDatabase& database, std::size_t within, std::size_t cell,
                      std::size_t most, const PlaceLimits& limits) {
    const CellOrder order = OrderCells(database);
    const PlaceCounts counts(database, order, cell);
    const GdsCell& start = database.cells[within];
    const GdsCell& target = database.cells[cell];
    CellPlaces places;
    places.count = counts.Of(start);
    if (places.count == FlatCount() || most == 0) {
        return places;
    }
    BoxesOfCell boxes(database, order, cell, limits);
    const std::optional<GdsRect> drawn = boxes.Under({});
    places.hasShapes = !drawn || !IsNothing(*drawn);
    if (!places.hasShapes) {
        return places;
    }
    PlaceLimits withCells = limits;  // a cell that is not turned is no turn
    withCells.turns += database.cells.size();
    const std::optional<FirstBoxes> firsts =
        FirstBoxSearch(counts, boxes, target, withCells).From(start);
    std::optional<std::vector<GdsRect>> found;
    if (firsts) {
        found = PlaceSearch(counts, *firsts, target, most, limits).From(start);
    }
    places.beyondLimits = !found.has_value();
    places.boxes = std::move(found).value_or(std::vector<GdsRect>());
    return places;
}

}  // namespace zelmo
