#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <unordered_map>

#include "gds/placement.h"

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
    struct Key {
        const GdsCell* cell = nullptr;
        std::uint16_t flip = 0;
        std::int64_t dx = 0;
        std::int64_t dy = 0;
        std::uint64_t magBits = 0;
        std::uint64_t angleBits = 0;

        bool operator==(const Key&) const = default;
    };

    struct KeyHash {
        std::size_t operator()(const Key& key) const;
    };

    static Key KeyOf(const GdsCell& cell, const GdsTransform& transform);

    std::unordered_map<Key, std::uint64_t, KeyHash> dropped_;
};

}  // namespace zelmo
