#include "model/edge_distance_lanes.h"

#include "model/lanes.h"

namespace zelmo::ZELMO_LANES {

void TableDistances(float* distances, const std::int32_t* squared, std::int32_t count,
                    float spacing) {
    for (std::int32_t i = 0; i < count; ++i) {
        const float distance = __builtin_sqrtf(static_cast<float>(squared[i])) * spacing;
        distances[i] = squared[i] != 0 ? distance : 0.0f;
    }
}

// With `before` the previous distance less a pitch, in cells, a search begins at the last entry of
// the slot trunc(before) - 1, or of slot 0. It can be late unless the cell's own slot comes after.
bool MarkLateSearches(std::uint8_t* late, const float* distances, std::int32_t count,
                      float spacing) {
    constexpr float anyLarge = 1000000.0f;  // keeps the truncation within its range
    std::int32_t anyLate = 0;
    for (std::int32_t i = 1; i < count; ++i) {
        const float before = (distances[i - 1] - spacing) / spacing;
        const float bounded = before < anyLarge ? before : anyLarge;
        const float own = distances[i] / spacing;
        const float least =
            static_cast<float>(static_cast<std::int32_t>(bounded > 1.0f ? bounded : 1.0f));
        const std::int32_t isLate = (distances[i] != 0.0f) & !(own >= least) ? 1 : 0;
        late[i] = static_cast<std::uint8_t>(isLate);
        anyLate |= isLate;
    }
    return anyLate != 0;
}

}  // namespace zelmo::ZELMO_LANES
