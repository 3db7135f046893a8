#include "model/mask/region_union.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <utility>

// A group of regions falls apart where no box crosses a line. A group that does so neither across
// nor along is united at once if it is small. Of a large one two halves are united by themselves,
// and then what touches the other half.

namespace zelmo {

namespace {

using Regions = std::vector<Region>;

constexpr std::size_t smallGroup = 32;
/// Groups that fall apart again and again, into one region and the rest, are cut into halves
/// beyond this: a group can be as deep as it has regions.
constexpr int deepest = 64;

void Append(Regions& regions, Regions&& more) {
    regions.insert(regions.end(), std::make_move_iterator(more.begin()),
                   std::make_move_iterator(more.end()));
}

ClipperLib::cInt LowEnd(const Region& region, bool across) {
    return across ? region.box.left : region.box.low;
}

ClipperLib::cInt HighEnd(const Region& region, bool across) {
    return across ? region.box.right : region.box.high;
}

/// Moves the regions that touch the box out of `regions`, the others into `apart`.
Regions TakeTouching(Regions&& regions, const RegionBox& box, Regions& apart) {
    Regions touching;
    for (Region& region : regions) {
        (Touch(region.box, box) ? touching : apart).push_back(std::move(region));
    }
    return touching;
}

RegionBox BoxAround(const Regions& regions) {
    RegionBox box = regions[0].box;
    for (const Region& region : regions) {
        box = Around(box, region.box);
    }
    return box;
}

/// The union of two lists whose regions share nothing within each list.
Regions UniteHalves(Regions&& first, Regions&& second) {
    Regions united;
    if (!first.empty() && !second.empty()) {
        const RegionBox firstBox = BoxAround(first);
        Regions touching = TakeTouching(std::move(first), BoxAround(second), united);
        Append(touching, TakeTouching(std::move(second), firstBox, united));
        Append(united, UniteAll(touching));
        return united;
    }
    Append(united, std::move(first));
    Append(united, std::move(second));
    return united;
}

/// Sorts a group along an axis, and cuts it where no box reaches from one part into the next.
std::vector<Regions> FallApart(Regions&& group, bool across) {
    std::stable_sort(group.begin(), group.end(), [across](const Region& a, const Region& b) {
        return LowEnd(a, across) < LowEnd(b, across);
    });
    std::vector<Regions> parts;
    ClipperLib::cInt reach = 0;
    for (Region& region : group) {
        if (parts.empty() || LowEnd(region, across) > reach) {
            parts.emplace_back();
            reach = HighEnd(region, across);
        }
        reach = std::max(reach, HighEnd(region, across));
        parts.back().push_back(std::move(region));
    }
    return parts;
}

Regions UniteGroup(Regions&& group, bool across, bool heldBefore, int depth);

Regions UniteInHalves(Regions&& group, bool across, int depth) {
    const auto middle = group.begin() + static_cast<std::ptrdiff_t>(group.size() / 2);
    Regions second(std::make_move_iterator(middle), std::make_move_iterator(group.end()));
    group.erase(middle, group.end());
    return UniteHalves(UniteGroup(std::move(group), !across, false, depth + 1),
                       UniteGroup(std::move(second), !across, false, depth + 1));
}

/// The union of a group. `heldBefore`: it was not cut along the other axis.
Regions UniteGroup(Regions&& group, bool across, bool heldBefore, int depth) {
    if (group.size() < 2) {
        return std::move(group);
    }
    std::vector<Regions> parts = FallApart(std::move(group), across);
    if (parts.size() == 1 && heldBefore && parts[0].size() <= smallGroup) {
        return UniteAll(parts[0]);
    }
    if (parts.size() == 1 && heldBefore) {
        return UniteInHalves(std::move(parts[0]), across, depth);
    }
    if (parts.size() > 1 && depth >= deepest) {
        Regions all;
        for (Regions& part : parts) {
            Append(all, std::move(part));
        }
        return UniteInHalves(std::move(all), across, depth);
    }
    Regions united;
    for (Regions& part : parts) {
        Append(united, UniteGroup(std::move(part), !across, parts.size() == 1, depth + 1));
    }
    return united;
}

}  // namespace

Regions UniteRegions(Regions regions) {
    return UniteGroup(std::move(regions), true, false, 0);
}

}  // namespace zelmo
