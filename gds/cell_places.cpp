#include "gds/cell_places.h"

#include <algorithm>
#include <optional>
#include <queue>
#include <utility>

#include "gds/array_lattice.h"
#include "gds/cell_order.h"
#include "gds/first_boxes.h"
#include "gds/placed_boxes.h"
#include "gds/placed_references.h"
#include "gds/placement_key.h"

namespace zelmo {

namespace {

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
            const PlacedReference reference = ReferenceAt(cell, i);
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
        FindFirstBoxes(counts, boxes, start, target, withCells);
    std::optional<std::vector<GdsRect>> found;
    if (firsts) {
        found = PlaceSearch(counts, *firsts, target, most, limits).From(start);
    }
    places.beyondLimits = !found.has_value();
    places.boxes = std::move(found).value_or(std::vector<GdsRect>());
    return places;
}

}  // namespace zelmo
