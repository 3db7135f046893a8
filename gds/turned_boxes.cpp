#include "gds/turned_boxes.h"

#include "gds/gds_database.h"
#include "gds/placed_boxes.h"

namespace zelmo {

const std::optional<GdsRect>& TurnedBoxes::Find(std::size_t cell) {
    drawn_[cell] = WorkOutFrom(LinearKeyOf(database_.cells[cell], {}));
    return drawn_[cell];
}

std::optional<GdsRect> TurnedBoxes::FindTurned(std::size_t cell, const GdsTransform& transform) {
    const PlacementKey key = LinearKeyOf(database_.cells[cell], transform);
    if (key == LinearKeyOf(database_.cells[cell], {})) {
        return drawn_[cell];
    }
    if (const auto found = boxes_.find(key); found != boxes_.end()) {
        return found->second;
    }
    return boxes_.emplace(key, WorkOutFrom(key)).first->second;
}

std::optional<GdsRect> TurnedBoxes::WorkOutFrom(const PlacementKey& key) {
    path_.push_back(BeginVisit(key));
    while (path_.size() > 1 || path_.back().next < path_.back().turned.size()) {
        if (boxes_.size() > limits_.turns || turnedElements_ > limits_.turnedElements) {
            path_.clear();
            return std::nullopt;
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
    std::optional<GdsRect> box = WorkOut(path_.back());
    path_.clear();
    return box;
}

std::size_t TurnedBoxes::NumberOf(const GdsCell& cell) const {
    return static_cast<std::size_t>(&cell - database_.cells.begin());
}

void TurnedBoxes::AddChild(Visit& visit, const PlacementKey& key, const GdsRect& offsets) {
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

TurnedBoxes::Visit TurnedBoxes::BeginVisit(const PlacementKey& key) {
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

std::optional<GdsRect> TurnedBoxes::WorkOut(const Visit& visit) {
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

}  // namespace zelmo
