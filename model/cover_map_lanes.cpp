#include "model/cover_map_lanes.h"

#include "base/lane_code.h"

namespace zelmo::ZELMO_LANES {

namespace {

/// The bits of 32 cells. Each lane collects its share of them where they belong in the word.
std::uint64_t ThickCells(const float* top, const float* bottom) {
    const IntLanes laneBit = Broadcast<IntLanes>(1) << CountingLanes<IntLanes>();
    IntLanes collected{};
    for (std::int32_t i = 0; i < 32; i += laneCount<FloatLanes>) {
        const FloatLanes thickness =
            LoadLanes<FloatLanes>(top + i) - LoadLanes<FloatLanes>(bottom + i);
        collected |= ((thickness != 0.0f) & laneBit) << i;
    }
    const auto pairs = (LongLanes)collected;
    std::uint64_t bits = 0;
    for (std::int32_t lane = 0; lane < laneCount<LongLanes>; ++lane) {
        bits |= static_cast<std::uint64_t>(pairs[lane]);
    }
    return (bits | bits >> 32) & 0xFFFFFFFFU;
}

/// The bits of fewer than 64 cells.
std::uint64_t ThickCells(const float* top, const float* bottom, std::int32_t cells) {
    std::uint64_t bits = 0;
    for (std::int32_t i = 0; i < cells; ++i) {
        bits |= static_cast<std::uint64_t>(top[i] - bottom[i] != 0.0f ? 1 : 0) << i;
    }
    return bits;
}

}  // namespace

void MarkThickCells(const float* top, const float* bottom, std::int32_t cells,
                    std::uint32_t wantedWords, std::uint64_t* words) {
    for (; cells > 0; cells -= 64, top += 64, bottom += 64, wantedWords >>= 1, ++words) {
        if ((wantedWords & 1U) == 0) {
            *words = 0;
        } else if (cells < 64) {
            *words = ThickCells(top, bottom, cells);
        } else {
            *words = ThickCells(top, bottom) | ThickCells(top + 32, bottom + 32) << 32;
        }
    }
}

}  // namespace zelmo::ZELMO_LANES
