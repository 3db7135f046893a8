#include "model/steps/etch_lanes.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "base/lane_code.h"

namespace zelmo::ZELMO_LANES {

namespace {

constexpr std::int32_t lanes = laneCount<FloatLanes>;

/// The next lanes of cells: at the end of the cells there can be fewer.
struct NextCells {
    std::int32_t first;
    std::size_t bytes;
};

NextCells CellsFrom(const EtchedCells& cells, std::int32_t first) {
    const std::int32_t left = cells.count - first;
    return {first, (left < lanes ? left : lanes) * sizeof(float)};
}

template <typename Lanes, typename Value>
Lanes Load(const Value* values, const NextCells& next) {
    if (next.bytes == sizeof(Lanes)) {
        return LoadLanes<Lanes>(values + next.first);
    }
    Lanes some{};
    std::memcpy(&some, values + next.first, next.bytes);
    return some;
}

template <typename Value, typename Lanes>
void Store(Value* values, const Lanes& some, const NextCells& next) {
    if (next.bytes == sizeof(Lanes)) {
        StoreLanes(values + next.first, some);
    } else {
        std::memcpy(values + next.first, &some, next.bytes);
    }
}

}  // namespace

[[gnu::flatten]] bool LowerToFront(const EtchedCells& cells) {
    IntLanes anyOpen{};
    for (std::int32_t i = 0; i < cells.count; i += lanes) {
        const NextCells next = CellsFrom(cells, i);
        const FloatLanes top = Load<FloatLanes>(cells.top, next);
        const FloatLanes bottom = Load<FloatLanes>(cells.bottom, next);
        const FloatLanes front = Load<FloatLanes>(cells.front, next);
        const IntLanes open = Load<IntLanes>(cells.open, next);
        const IntLanes isCut = open & (top != bottom) & (top > front);
        if (AnyLane(isCut)) {
            const IntLanes isGone = bottom > front;
            Store(cells.top, isCut ? (isGone ? bottom : front) : top, next);
            Store(cells.open, open & (~isCut | isGone), next);
            anyOpen |= open & (~isCut | isGone);
        } else {
            anyOpen |= open;
        }
    }
    return AnyLane(anyOpen);
}

[[gnu::flatten]] bool CloseWhereThick(const EtchedCells& cells) {
    IntLanes anyOpen{};
    for (std::int32_t i = 0; i < cells.count; i += lanes) {
        const NextCells next = CellsFrom(cells, i);
        const IntLanes isThin = Load<FloatLanes>(static_cast<const float*>(cells.top), next) ==
                                Load<FloatLanes>(cells.bottom, next);
        const IntLanes open = Load<IntLanes>(cells.open, next) & isThin;
        Store(cells.open, open, next);
        anyOpen |= open;
    }
    return AnyLane(anyOpen);
}

}  // namespace zelmo::ZELMO_LANES
