#include "model/steps/etch_lanes.h"

#include <cstdint>

#include "base/lane_code.h"
#include "model/steps/next_cells.h"

namespace zelmo::ZELMO_LANES {

[[gnu::flatten]] bool LowerToFront(const EtchedCells& cells) {
    IntLanes anyOpen{};
    for (std::int32_t i = 0; i < cells.count; i += cellLanes) {
        const NextCells next = CellsFrom(i, cells.count);
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
    for (std::int32_t i = 0; i < cells.count; i += cellLanes) {
        const NextCells next = CellsFrom(i, cells.count);
        const IntLanes isThin = Load<FloatLanes>(static_cast<const float*>(cells.top), next) ==
                                Load<FloatLanes>(cells.bottom, next);
        const IntLanes open = Load<IntLanes>(cells.open, next) & isThin;
        Store(cells.open, open, next);
        anyOpen |= open;
    }
    return AnyLane(anyOpen);
}

}  // namespace zelmo::ZELMO_LANES
