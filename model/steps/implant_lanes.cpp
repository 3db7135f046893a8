#include "model/steps/implant_lanes.h"

#include <cstdint>

#include "base/lane_code.h"
#include "model/steps/next_cells.h"

namespace zelmo::ZELMO_LANES {

namespace {

/// Lanes without a column must not keep the way open.
IntLanes LoadState(const DopedColumns& columns, const NextCells& next) {
    const IntLanes state = Load<IntLanes>(columns.state, next);
    if (next.bytes == sizeof(IntLanes)) {
        return state;
    }
    return CountingLanes<IntLanes>() < columns.count - next.first ? state
                                                                  : Broadcast<IntLanes>(columnDone);
}

IntLanes LargerLanes(const IntLanes& a, const IntLanes& b) {
    return a > b ? a : b;
}

IntLanes LargestOfThree(const std::int32_t* row, const NextCells& next) {
    return LargerLanes(LargerLanes(Load<IntLanes>(row - 1, next), Load<IntLanes>(row + 1, next)),
                       Load<IntLanes>(row, next));
}

}  // namespace

[[gnu::flatten]] ConversionProgress ConvertTarget(const DopedColumns& columns,
                                                  const LayerColumns& layer, float depth) {
    const IntLanes id = Broadcast<IntLanes>(layer.id);
    IntLanes anyConverts{};
    IntLanes anyGoesOn{};
    for (std::int32_t i = 0; i < columns.count; i += cellLanes) {
        const NextCells next = CellsFrom(i, columns.count);
        IntLanes state = LoadState(columns, next);
        if (AllLanes(state == columnDone)) {
            continue;
        }
        const FloatLanes top = Load<FloatLanes>(layer.top, next);
        const FloatLanes bottom = Load<FloatLanes>(layer.bottom, next);
        FloatLanes newTop = Load<FloatLanes>(columns.top, next);
        FloatLanes newBottom = Load<FloatLanes>(columns.bottom, next);
        const IntLanes isThick = top != bottom;
        // NOLINTNEXTLINE(misc-redundant-expression): a number equals itself, NaN does not
        const IntLanes isTarget = (top > bottom) & (top - top == 0.0f);
        const IntLanes starts = (state == columnOpen) & isTarget;
        const IntLanes follows = (state == columnConverting) & isTarget & (top >= newBottom);
        const IntLanes isFound = (state == columnShielded) & isTarget;
        const IntLanes converts = starts | follows;
        state = (state == columnOpen) & isThick & ~starts
                    ? Broadcast<IntLanes>(columnShielded)
                    : (isFound | ((state == columnConverting) & isThick & ~follows)
                           ? Broadcast<IntLanes>(columnDone)
                           : (starts ? Broadcast<IntLanes>(columnConverting) : state));
        newTop = starts | isFound ? top : newTop;
        newBottom = converts ? bottom : (isFound ? top : newBottom);
        const IntLanes reached = (state == columnConverting) & ~(newBottom > newTop - depth);
        state = reached ? Broadcast<IntLanes>(columnDone) : state;
        const IntLanes first = Load<IntLanes>(columns.first, next);
        const IntLanes last = Load<IntLanes>(columns.last, next);
        Store(columns.first, starts ? id : (isFound ? Broadcast<IntLanes>(shieldedTarget) : first),
              next);
        Store(columns.last, converts ? id : last, next);
        Store(columns.top, newTop, next);
        Store(columns.bottom, newBottom, next);
        Store(columns.state, state, next);
        anyConverts |= converts;
        anyGoesOn |= state != columnDone;
    }
    return {AnyLane(anyConverts), AnyLane(anyGoesOn)};
}

[[gnu::flatten]] bool MeetShield(const DopedColumns& columns, const LayerColumns& layer) {
    IntLanes anyGoesOn{};
    for (std::int32_t i = 0; i < columns.count; i += cellLanes) {
        const NextCells next = CellsFrom(i, columns.count);
        IntLanes state = LoadState(columns, next);
        const IntLanes isThick =
            Load<FloatLanes>(layer.top, next) != Load<FloatLanes>(layer.bottom, next);
        const IntLanes ends = isThick & (state == columnConverting);
        const IntLanes shields = isThick & (state == columnOpen);
        state = ends ? Broadcast<IntLanes>(columnDone)
                     : (shields ? Broadcast<IntLanes>(columnShielded) : state);
        Store(columns.state, state, next);
        anyGoesOn |= state != columnDone;
    }
    return AnyLane(anyGoesOn);
}

[[gnu::flatten]] void LowerConverted(float* tops, const LayerColumns& layer,
                                     const DopedColumns& columns) {
    const IntLanes id = Broadcast<IntLanes>(layer.id);
    for (std::int32_t i = 0; i < columns.count; i += cellLanes) {
        const NextCells next = CellsFrom(i, columns.count);
        const IntLanes first = Load<IntLanes>(columns.first, next);
        const IntLanes last = Load<IntLanes>(columns.last, next);
        const IntLanes isInside = (first >= id) & (last <= id);
        if (AnyLane(isInside)) {
            const FloatLanes top = Load<FloatLanes>(tops, next);
            const FloatLanes bottom = Load<FloatLanes>(layer.bottom, next);
            const FloatLanes newBottom = Load<FloatLanes>(columns.bottom, next);
            const FloatLanes lowered = last == id ? newBottom : bottom;
            Store(tops, (isInside & (top != bottom)) ? lowered : top, next);
        }
    }
}

[[gnu::flatten]] bool FindRim(const std::int32_t* front, const std::int32_t* middle,
                              const std::int32_t* back, std::int32_t* rim, std::int32_t count) {
    IntLanes any{};
    for (std::int32_t i = 0; i < count; i += cellLanes) {
        const NextCells next = CellsFrom(i, count);
        const IntLanes around =
            LargerLanes(LargerLanes(LargestOfThree(front, next), LargestOfThree(back, next)),
                        LargestOfThree(middle, next));
        const IntLanes isRim = (Load<IntLanes>(middle, next) == noTarget) & (around > 0);
        Store(rim, isRim & around, next);
        any |= isRim;
    }
    return AnyLane(any);
}

}  // namespace zelmo::ZELMO_LANES
