#include "gds/placement_key.h"

#include <bit>

namespace zelmo {

std::size_t PlacementKeyHash::operator()(const PlacementKey& key) const {
    constexpr std::uint64_t oddBits = 0x9E3779B97F4A7C15u;  // the golden ratio's: a good mixture
    std::uint64_t hash = std::bit_cast<std::uintptr_t>(key.cell) + key.flip;
    for (const std::uint64_t part :
         {static_cast<std::uint64_t>(key.dx), static_cast<std::uint64_t>(key.dy), key.magBits,
          key.angleBits}) {
        hash = (hash ^ part ^ (part >> 32)) * oddBits;
    }
    return static_cast<std::size_t>(hash ^ (hash >> 32));
}

PlacementKey KeyOf(const GdsCell& cell, const GdsTransform& transform) {
    return {&cell,
            transform.flip,
            transform.dx,
            transform.dy,
            std::bit_cast<std::uint64_t>(transform.mag),
            std::bit_cast<std::uint64_t>(transform.angle)};
}

PlacementKey LinearKeyOf(const GdsCell& cell, const GdsTransform& transform) {
    PlacementKey key = KeyOf(cell, transform);
    key.dx = 0;
    key.dy = 0;
    return key;
}

GdsTransform TransformOf(const PlacementKey& key) {
    return {key.flip, key.dx, key.dy, std::bit_cast<double>(key.magBits),
            std::bit_cast<double>(key.angleBits)};
}

}  // namespace zelmo
