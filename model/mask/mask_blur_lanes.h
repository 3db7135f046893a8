#pragma once

#include <cstddef>
#include <cstdint>

#include "base/lanes.h"

namespace zelmo {

/// How many columns more than there are may be read and written behind the last one.
constexpr std::int32_t blurOvershoot = 63;

/// Where the edge of a disc passes through a row: the running counts of the row where cells are
/// taken in and where they are given up, for the disc around column 0. For the disc around another
/// column both are as many columns further on.
struct DiscEdge {
    const std::int32_t* taken = nullptr;
    const std::int32_t* given = nullptr;
};

/// For each column of a row, `start` plus what is taken in and minus what is given up at all edges.
ZELMO_DECLARE_LANE_KERNEL(void SumDiscEdges(const DiscEdge* edges, std::size_t edgeCount,
                                            std::int32_t start, std::int32_t cols,
                                            std::int32_t* sums))

/// 1 where more than half of the cells are set, 0 elsewhere.
ZELMO_DECLARE_LANE_KERNEL(void MarkMajorities(const std::int32_t* setCells,
                                              const std::int32_t* cells, std::int32_t cols,
                                              std::uint8_t* mask))

}  // namespace zelmo
