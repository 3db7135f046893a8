#include "gds/fruitless_placements.h"

#include <cstddef>

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

}  // namespace zelmo
