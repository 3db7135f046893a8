#include "gds/fruitless_placements.h"

#include <bit>

namespace zelmo {

namespace {

constexpr std::size_t largestTable = 500000;

}  // namespace

void FruitlessPlacements::Add(const GdsCell& cell, const GdsTransform& transform,
                              std::uint64_t dropped) {
    if (dropped_.size() < largestTable) {
        dropped_.emplace(KeyOf(cell, transform), dropped);
    }
}

std::optional<std::uint64_t> FruitlessPlacements::Find(const GdsCell& cell,
                                                       const GdsTransform& transform) const {
    const auto found = dropped_.find(KeyOf(cell, transform));
    return found == dropped_.end() ? std::nullopt : std::optional(found->second);
}

std::size_t FruitlessPlacements::KeyHash::operator()(const Key& key) const {
    std::uint64_t hash = std::bit_cast<std::uintptr_t>(key.cell) + key.flip;
    for (const std::uint64_t part :
         {static_cast<std::uint64_t>(key.dx), static_cast<std::uint64_t>(key.dy), key.magBits,
          key.angleBits}) {
        hash = (hash ^ part ^ (part >> 32)) * 0x9E3779B97F4A7C15u;
    }
    return static_cast<std::size_t>(hash ^ (hash >> 32));
}

FruitlessPlacements::Key FruitlessPlacements::KeyOf(const GdsCell& cell,
                                                    const GdsTransform& transform) {
    return {&cell,
            transform.flip,
            transform.dx,
            transform.dy,
            std::bit_cast<std::uint64_t>(transform.mag),
            std::bit_cast<std::uint64_t>(transform.angle)};
}

}  // namespace zelmo
