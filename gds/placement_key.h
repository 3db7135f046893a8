#pragma once

#include <cstddef>
#include <cstdint>

#include "gds/placement.h"

namespace zelmo {

/// A cell under a placement, to look things up by. Placements are the same if all of their bits
/// are.
struct PlacementKey {
    const GdsCell* cell = nullptr;
    std::uint16_t flip = 0;
    std::int64_t dx = 0;
    std::int64_t dy = 0;
    std::uint64_t magBits = 0;
    std::uint64_t angleBits = 0;

    bool operator==(const PlacementKey&) const = default;
};

struct PlacementKeyHash {
    std::size_t operator()(const PlacementKey& key) const;
};

PlacementKey KeyOf(const GdsCell& cell, const GdsTransform& transform);

/// The same for the linear part of a placement alone: its offset counts as 0.
PlacementKey LinearKeyOf(const GdsCell& cell, const GdsTransform& transform);

GdsTransform TransformOf(const PlacementKey& key);

}  // namespace zelmo
