#include "gds/placed_content.h"

#include "gds/array_lattice.h"
#include "gds/gds_database.h"

namespace zelmo {

namespace {

constexpr std::size_t largestTable = 500000;

/// Boxes are cut at these limits when they are placed, so a side there may not be a true one.
bool IsWithin32Bits(const GdsRect& box) {
    constexpr GdsRect empty;
    return box.xmin > empty.xmax && box.ymin > empty.ymax && box.xmax < empty.xmin &&
           box.ymax < empty.ymin;
}

}  // namespace

bool StaysBounded(const PlacedContent& content, const GdsRect& offsets) {
    return content.bounded && IsWithin32Bits(MoveRect(content.wholeBox, offsets));
}

const PlacedContent* ContentTable::Of(const GdsCell& cell, const GdsTransform& transform) {
    const PlacementKey wanted = LinearKeyOf(cell, transform);
    if (const auto found = contents_.find(wanted); found != contents_.end()) {
        return &found->second;
    }
    std::vector<Visit> path;
    path.push_back(BeginVisit(wanted));
    while (!path.empty() && contents_.size() < largestTable) {
        Visit& visit = path.back();
        while (visit.next < visit.children.size() &&
               contents_.contains(visit.children[visit.next].key)) {
            ++visit.next;
        }
        if (visit.next < visit.children.size()) {
            path.push_back(BeginVisit(visit.children[visit.next].key));
        } else {
            contents_.emplace(visit.key, WorkOut(visit));
            path.pop_back();
        }
    }
    const auto found = contents_.find(wanted);
    return found == contents_.end() ? nullptr : &found->second;
}

ContentTable::Visit ContentTable::BeginVisit(const PlacementKey& key) {
    Visit visit{key, {}, 0};
    const GdsTransform transform = TransformOf(key);
    const LinearPart linear = LinearPartOf(transform);
    for (const GdsSref& sref : key.cell->srefs) {
        const GdsTransform child =
            PlaceChild(sref.origin, sref.mag, sref.angle, sref.strans, transform, linear);
        visit.children.push_back(
            {LinearKeyOf(*sref.cell, child), {child.dx, child.dy, child.dx, child.dy}, 1});
    }
    for (const GdsAref& aref : key.cell->arefs) {
        const LatticeBlock all = WholeBlock(aref);
        if (!all.IsEmpty()) {
            const GdsTransform child =
                PlaceChild({}, aref.mag, aref.angle, aref.strans, transform, linear);
            visit.children.push_back(
                {LinearKeyOf(*aref.cell, child),
                 BlockOffsets(LatticeOf(aref), PositionRule::Truncate32, all, transform, linear),
                 all.InstanceCount()});
        }
    }
    return visit;
}

PlacedContent ContentTable::WorkOut(const Visit& visit) const {
    PlacedContent content;
    const GdsCell& cell = *visit.key.cell;
    const GdsTransform transform = TransformOf(visit.key);
    const LinearPart linear = LinearPartOf(transform);
    content.wholeBox = PlaceRect(cell.bounds, transform, linear);
    MergeRect(content.wholeBox, {0, 0, 0, 0});
    for (const GdsBoundary& boundary : cell.boundaries) {
        const GdsRect box = PlaceRect(boundary.bounds, transform, linear);
        const bool small = SmallerSide(box) < minSize_;
        content.empty = false;
        content.allSmall = content.allSmall && small;
        content.small += small ? 1 : 0;
        MergeRect(content.polygonBox, box);
        MergeRect(content.wholeBox, box);
    }
    for (const Child& child : visit.children) {
        AddChild(content, child);
    }
    content.bounded = content.bounded && IsWithin32Bits(content.wholeBox);
    return content;
}

void ContentTable::AddChild(PlacedContent& content, const Child& child) const {
    const PlacedContent& below = contents_.at(child.key);
    if (below.empty) {
        return;
    }
    content.empty = false;
    content.allSmall = content.allSmall && below.allSmall;
    content.small += child.instances * below.small;
    content.bounded = content.bounded && below.bounded;
    MergeRect(content.polygonBox, MoveRect(below.polygonBox, child.offsets));
    MergeRect(content.wholeBox, MoveRect(below.wholeBox, child.offsets));
}

}  // namespace zelmo
