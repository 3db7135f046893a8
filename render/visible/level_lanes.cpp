#include "render/visible/level_lanes.h"

#include <cstdint>

#include "base/lane_code.h"

namespace zelmo::ZELMO_LANES {

namespace {

constexpr std::int32_t lanes = laneCount<FloatLanes>;
constexpr float farAway = 3e38f;

/// What lies above a place while the stack is walked down, and the uppermost opaque layer once it
/// has been reached.
struct Walk {
    FloatLanes lowestTop = FloatLanes{} + farAway;
    FloatLanes lowestBottom = FloatLanes{} + farAway;  ///< but for the layer walked through last
    FloatLanes lastBottom = FloatLanes{} + farAway;
    IntLanes code = IntLanes{} - 1;
    FloatLanes height{};
    IntLanes isClear{};
};

void WalkThrough(const SheetRow& layer, std::int32_t place, const LevelLimits& limits,
                 std::int32_t col, Walk& walk) {
    const FloatLanes top = LoadLanes(layer.top + col);
    const FloatLanes bottom = LoadLanes(layer.bottom + col);
    const IntLanes thick = LoadLanes(layer.thick + col);
    const IntLanes isBelow = walk.code >= 0;
    const FloatLanes clear = walk.height - limits.clearance;
    walk.isClear &= ~isBelow | ((top <= clear) & (bottom <= clear));
    const IntLanes isNext = ~isBelow & thick;
    if (layer.isOpaque) {
        const FloatLanes above = top + limits.clearance;
        const IntLanes hasOneStanding = walk.lastBottom == top;
        const IntLanes isClear = (bottom + limits.clearance <= top) & (top <= limits.highest) &
                                 (hasOneStanding | (walk.lastBottom >= above)) &
                                 (walk.lowestBottom >= above) & (walk.lowestTop >= above);
        walk.code = isNext ? (IntLanes{} + 2 * place) - hasOneStanding : walk.code;
        walk.height = isNext ? top : walk.height;
        walk.isClear = isNext ? isClear : walk.isClear;
    } else {
        const FloatLanes lowestBottom = SmallerLanes(walk.lowestBottom, walk.lastBottom);
        walk.lowestBottom = isNext ? lowestBottom : walk.lowestBottom;
        walk.lastBottom = isNext ? bottom : walk.lastBottom;
        walk.lowestTop = isNext ? SmallerLanes(walk.lowestTop, top) : walk.lowestTop;
    }
}

}  // namespace

void FindLevelPlaces(const SheetRow* layers, std::int32_t layerCount, const LevelLimits& limits,
                     std::int32_t cols, const LevelRow& level) {
    for (std::int32_t col = 0; col < cols; col += lanes) {
        Walk walk;
        for (std::int32_t place = layerCount; place-- > 0;) {
            WalkThrough(layers[place], place, limits, col, walk);
        }
        StoreLanes(level.code + col, walk.isClear ? walk.code : IntLanes{} - 1);
        StoreLanes(level.height + col, walk.height);
    }
}

void FindLevelSquares(const LevelRow& front, const LevelRow& back, const std::int32_t* uneven,
                      std::int32_t squares, std::uint8_t* marks) {
    for (std::int32_t col = 0; col < squares; ++col) {
        const std::int32_t code = front.code[col];
        const float height = front.height[col];
        const bool isLevel = (code >= 0) & (code == front.code[col + 1]) &
                             (code == back.code[col]) & (code == back.code[col + 1]) &
                             (height == front.height[col + 1]) & (height == back.height[col]) &
                             (height == back.height[col + 1]) & (uneven[col] == 0);
        marks[col] = isLevel ? 1 : 0;
    }
}

}  // namespace zelmo::ZELMO_LANES
