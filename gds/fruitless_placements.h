#pragma once

#include <cstdint>
#include <optional>
#include <unordered_map>

#include "gds/placement_key.h"

namespace zelmo {

/// Placements of cells that were walked through to the end without selecting a polygon. Hierarchies
/// that come to the same placement of the same cell on many ways, up to a number that no walk
/// finishes, are so walked once.
class FruitlessPlacements {
public:
    /// Notes a placement and how many polygons were dropped for their size in it. Does nothing once
    /// the table is full.
    void Add(const GdsCell& cell, const GdsTransform& transform, std::uint64_t dropped);

    /// The number of polygons dropped at that placement, if it is known to be fruitless.
    std::optional<std::uint64_t> Find(const GdsCell& cell, const GdsTransform& transform) const;

private:
    std::unordered_map<PlacementKey, std::uint64_t, PlacementKeyHash> dropped_;
};

}  // namespace zelmo
