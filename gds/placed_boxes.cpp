#include "gds/placed_boxes.h"

#include <algorithm>

#include "gds/array_lattice.h"

namespace zelmo {

namespace {

bool Contains(const GdsRect& outer, const GdsRect& inner) {
    return outer.xmin <= inner.xmin && outer.ymin <= inner.ymin && outer.xmax >= inner.xmax &&
           outer.ymax >= inner.ymax;
}

/// The box of the placed points alone.
GdsRect BoxOf(const PointRun& points, const LinearPart& linear) {
    return points.As([&](const auto run) {
        const GdsPoint first = TurnPoint(run[0], linear);
        GdsRect box{first.x, first.y, first.x, first.y};
        for (const GdsPoint point : run) {
            const GdsPoint turned = TurnPoint(point, linear);
            box.xmin = std::min(box.xmin, turned.x);
            box.ymin = std::min(box.ymin, turned.y);
            box.xmax = std::max(box.xmax, turned.x);
            box.ymax = std::max(box.ymax, turned.y);
        }
        return box;
    });
}

bool IsIdentity(const LinearPart& linear) {
    return linear.sine == 0.0 && linear.cosine == 1.0 && linear.mirror == 1.0 && linear.mag == 1.0;
}

}  // namespace

void WidenByShape(GdsRect& box, const GdsBoundary& boundary, const LinearPart& linear,
                  const GdsRect& offsets) {
    if (boundary.points.empty()) {
        return;
    }
    const GdsRect corners = PlaceRect(boundary.bounds, {}, linear);
    if (Contains(box, MoveRect(corners, offsets))) {
        return;
    }
    const GdsRect placed = IsIdentity(linear) ? boundary.bounds : BoxOf(boundary.points, linear);
    MergeRect(box, MoveRect(placed, offsets));
}

GdsRect OffsetsOf(const GdsAref& aref, const GdsTransform& parent, const LinearPart& linear) {
    GdsRect offsets;
    if (const LatticeBlock block = WholeBlock(aref); !block.IsEmpty()) {
        const ArrayLattice lattice = LatticeOf(aref);
        const GdsPoint first =
            PlacePoint(InstancePosition(lattice, PositionRule::Truncate64, 0, 0), parent, linear);
        offsets = {first.x, first.y, first.x, first.y};
        WidenByOffsets(offsets, lattice, block, parent, linear);
    }
    return offsets;
}

std::uint64_t InstancesOf(const GdsAref& aref) {
    const LatticeBlock block = WholeBlock(aref);
    return block.IsEmpty() || aref.points.size() < 3 ? 0 : block.InstanceCount();
}

}  // namespace zelmo
