#include "model/mask/edge_distance_lanes.h"

#include "base/lane_code.h"

namespace zelmo::ZELMO_LANES {

namespace {

/// Rounds toward zero; the numbers fit 32 bits.
inline FloatLanes Truncate(const FloatLanes& numbers) {
    return __builtin_convertvector(__builtin_convertvector(numbers, IntLanes), FloatLanes);
}

}  // namespace

void TableDistances(float* distances, const std::int32_t* squared, std::int32_t count,
                    float spacing) {
    for (std::int32_t i = 0; i < count; ++i) {
        distances[i] = __builtin_sqrtf(static_cast<float>(squared[i])) * spacing;
    }
}

// With `before` the previous distance less a pitch, in cells, a search begins at the last entry of
// the slot trunc(before) - 1, or of slot 0. It can be late unless the cell's own slot comes after.
bool MarkLateSearches(std::int32_t* late, const float* distances, std::int32_t count,
                      float spacing) {
    constexpr std::int32_t width = laneCount<FloatLanes>;
    if (count <= width) {
        for (std::int32_t i = 1; i < count; ++i) {
            late[i] = 1;
        }
        return count > 1;
    }
    const auto pitch = Broadcast<FloatLanes>(spacing);
    const auto one = Broadcast<FloatLanes>(1.0f);
    const auto anyLarge = Broadcast<FloatLanes>(1000000.0f);  // keeps what is truncated in range
    IntLanes any{};
    const auto mark = [&](std::int32_t first) {
        const FloatLanes before = (LoadLanes<FloatLanes>(distances + first - 1) - pitch) / pitch;
        const FloatLanes bounded = before < anyLarge ? before : anyLarge;
        const FloatLanes least = Truncate(bounded > one ? bounded : one);
        const auto distance = LoadLanes<FloatLanes>(distances + first);
        const IntLanes isLate = (distance != 0.0f) & ~(distance / pitch >= least);
        StoreLanes(late + first, isLate);
        any |= isLate;
    };
    for (std::int32_t first = 1; first + width <= count; first += width) {
        mark(first);
    }
    mark(count - width);  // what is left over, and some of the others again
    return AnyLane(any);
}

}  // namespace zelmo::ZELMO_LANES
