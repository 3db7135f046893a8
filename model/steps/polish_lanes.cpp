#include "model/steps/polish_lanes.h"

#include <cstdint>

#include "base/lane_code.h"
#include "model/steps/next_cells.h"

namespace zelmo::ZELMO_LANES {

namespace {

FloatLanes LargerLanes(const FloatLanes& a, const FloatLanes& b) {
    return a > b ? a : b;
}

/// The lowest of three neighbouring values in each row's stead.
FloatLanes LowestOfThree(const float* row) {
    return SmallerLanes(SmallerLanes(LoadLanes(row), LoadLanes(row + 1)), LoadLanes(row + 2));
}

/// Whether a condition holds for any height. Several lanes are asked together.
template <typename Condition>
bool AnyCell(const float* heights, std::int32_t count, const Condition& holds) {
    constexpr std::int32_t together = 4;
    std::int32_t i = 0;
    for (; i + together * cellLanes <= count; i += together * cellLanes) {
        IntLanes any{};
        for (std::int32_t part = 0; part < together; ++part) {
            any |= holds(LoadLanes(heights + (i + part * cellLanes)));
        }
        if (AnyLane(any)) {
            return true;
        }
    }
    for (; i < count; ++i) {
        if (AnyLane(holds(Broadcast<FloatLanes>(heights[i])))) {
            return true;
        }
    }
    return false;
}

}  // namespace

static_assert(cellLanes <= spareStops);

[[gnu::flatten]] void RaiseStop(const float* top, const float* bottom, float* stop,
                                std::int32_t count) {
    for (std::int32_t i = 0; i < count; i += cellLanes) {
        const NextCells next = CellsFrom(i, count);
        const FloatLanes tops = Load<FloatLanes>(top, next);
        const FloatLanes bottoms = Load<FloatLanes>(bottom, next);
        const FloatLanes stops = Load<FloatLanes>(stop, next);
        // NOLINTNEXTLINE(misc-redundant-expression): a number equals itself, NaN does not
        const IntLanes isHigher = (tops > stops) & (tops != bottoms) & (bottoms == bottoms);
        Store(stop, isHigher ? tops : stops, next);
    }
}

[[gnu::flatten]] float HighestSquare(const float* front, const float* middle, const float* back,
                                     std::int32_t squares) {
    FloatLanes highest = Broadcast<FloatLanes>(-__builtin_inff());
    for (std::int32_t i = 0; i < squares; i += cellLanes) {
        const FloatLanes outer = SmallerLanes(LowestOfThree(front + i), LowestOfThree(back + i));
        highest = LargerLanes(highest, SmallerLanes(outer, LowestOfThree(middle + i)));
    }
    float level = highest[0];
    for (std::int32_t lane = 1; lane < cellLanes; ++lane) {
        level = highest[lane] > level ? highest[lane] : level;
    }
    return level;
}

[[gnu::flatten]] bool AnyAbove(const float* heights, std::int32_t count, float plane) {
    const FloatLanes planes = Broadcast<FloatLanes>(plane);
    return AnyCell(heights, count, [&](const FloatLanes& some) { return some > planes; });
}

[[gnu::flatten]] bool NoneBelow(const float* heights, std::int32_t count, float plane) {
    const FloatLanes planes = Broadcast<FloatLanes>(plane);
    return !AnyCell(heights, count, [&](const FloatLanes& some) { return ~(some >= planes); });
}

[[gnu::flatten]] void LowerToPlane(float* heights, std::int32_t count, float plane) {
    const FloatLanes planes = Broadcast<FloatLanes>(plane);
    for (std::int32_t i = 0; i < count; i += cellLanes) {
        const NextCells next = CellsFrom(i, count);
        const FloatLanes height = Load<FloatLanes>(heights, next);
        const IntLanes isAbove = height > planes;
        if (AnyLane(isAbove)) {
            Store(heights, isAbove ? planes : height, next);
        }
    }
}

}  // namespace zelmo::ZELMO_LANES
