#include "model/mask/region.h"

#include <algorithm>
#include <cstddef>
#include <new>

#include "model/mask/mask_layer.h"

namespace zelmo {

namespace {

using ClipperLib::cInt;
using ClipperLib::Path;
using ClipperLib::Paths;

RegionBox BoxOf(const Path& outline) {
    RegionBox box{outline[0].X, outline[0].Y, outline[0].X, outline[0].Y};
    for (const ClipperLib::IntPoint& point : outline) {
        box = Around(box, {point.X, point.Y, point.X, point.Y});
    }
    return box;
}

std::vector<Region> RegionsOf(const ClipperLib::PolyTree& tree) {
    std::vector<Region> regions;
    for (const ClipperLib::PolyNode* node = tree.GetFirst(); node != nullptr;
         node = node->GetNext()) {
        if (node->IsHole() || node->Contour.empty()) {
            continue;
        }
        Region& region = regions.emplace_back();
        region.outlines.push_back(node->Contour);
        for (const ClipperLib::PolyNode* hole : node->Childs) {
            region.outlines.push_back(hole->Contour);
        }
        region.box = BoxOf(node->Contour);
    }
    return regions;
}

/// The union of what was added to the library. It gives false where its memory runs out.
std::vector<Region> Unite(ClipperLib::Clipper& clipper, ClipperLib::PolyFillType rule) {
    clipper.StrictlySimple(true);
    ClipperLib::PolyTree tree;
    if (!clipper.Execute(ClipperLib::ctUnion, tree, rule, rule)) {
        throw std::bad_alloc();
    }
    return RegionsOf(tree);
}

/// Grows outlines by an offset above 0.
template <typename Outlines>
void Grow(const Paths& outlines, cInt offset, Outlines& grown) {
    ClipperLib::ClipperOffset clipper(static_cast<double>(mitreLimit));
    clipper.AddPaths(outlines, ClipperLib::jtMiter, ClipperLib::etClosedPolygon);
    clipper.Execute(grown, static_cast<double>(offset));
}

/// There is always something left, so that no outlines mean that the library's memory has run out.
Paths Grow(const Paths& outlines, cInt offset) {
    Paths grown;
    Grow(outlines, offset, grown);
    if (grown.empty()) {
        throw std::bad_alloc();
    }
    return grown;
}

Path Frame(const RegionBox& box) {
    return {{box.left, box.low}, {box.right, box.low}, {box.right, box.high}, {box.left, box.high}};
}

/// Shrinks a region: what is around it grows, in a frame that is taken off again.
Paths Shrink(const Region& region, cInt offset) {
    const cInt margin = 2 * offset + 2;
    const RegionBox frame{region.box.left - margin, region.box.low - margin,
                          region.box.right + margin, region.box.high + margin};
    Paths around = region.outlines;
    ClipperLib::ReversePaths(around);
    around.insert(around.begin(), Frame(frame));
    Paths grown = Grow(around, offset);
    std::erase_if(grown, [&](const Path& outline) { return BoxOf(outline).left < frame.left; });
    return grown;
}

}  // namespace

bool Touch(const RegionBox& a, const RegionBox& b) {
    return a.left <= b.right && b.left <= a.right && a.low <= b.high && b.low <= a.high;
}

RegionBox Around(const RegionBox& a, const RegionBox& b) {
    return {std::min(a.left, b.left), std::min(a.low, b.low), std::max(a.right, b.right),
            std::max(a.high, b.high)};
}

std::vector<Region> RegionsOf(const Paths& outlines) {
    ClipperLib::Clipper clipper;
    if (!clipper.AddPaths(outlines, ClipperLib::ptSubject, true)) {
        return {};
    }
    return Unite(clipper, ClipperLib::pftEvenOdd);
}

std::vector<Region> UniteAll(const std::vector<Region>& regions) {
    ClipperLib::Clipper clipper;
    for (const Region& region : regions) {
        clipper.AddPaths(region.outlines, ClipperLib::ptSubject, true);
    }
    return regions.empty() ? std::vector<Region>() : Unite(clipper, ClipperLib::pftNonZero);
}

std::vector<Region> GrowRegion(const Region& region, cInt offset) {
    ClipperLib::PolyTree grown;
    Grow(region.outlines, offset, grown);
    if (grown.ChildCount() == 0) {
        throw std::bad_alloc();
    }
    return RegionsOf(grown);
}

Paths OffsetRegion(const Region& region, cInt offset) {
    if (offset == 0) {
        return region.outlines;
    }
    return offset > 0 ? Grow(region.outlines, offset) : Shrink(region, -offset);
}

}  // namespace zelmo
