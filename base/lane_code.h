#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>
#include <utility>

// What lane kernels are written with (base/lanes.h). A file of them is compiled twice, for narrow
// and for wide lanes (cmake/compiler.cmake, zelmo_lane_kernels). Such a file
//   - includes this header, and those that are for files of lane kernels only, last: what follows
//     is code for the chosen machines, and nothing that other files share may be compiled so;
//   - holds its functions in `namespace zelmo::ZELMO_LANES`;
//   - throws nothing and allocates nothing: the caller hands it its arrays.

#ifndef ZELMO_LANES
#error "for files of lane kernels only: ZELMO_LANES is the namespace of their lanes"
#endif

#ifdef ZELMO_WIDE_LANES
#define ZELMO_LANE_BYTES 32
#if defined(__clang__)
#pragma clang attribute push(__attribute__((target("avx2"))), apply_to = function)
#else
#pragma GCC target("avx2")
#endif
#else
#define ZELMO_LANE_BYTES 16
#endif

namespace zelmo::ZELMO_LANES {

/// Lanes of one type each. Arithmetic works lane by lane; comparisons give -1 or 0 in lanes of
/// integers of the same size, and `condition ? a : b` chooses lane by lane.
using FloatLanes [[gnu::vector_size(ZELMO_LANE_BYTES)]] = float;
using IntLanes [[gnu::vector_size(ZELMO_LANE_BYTES)]] = std::int32_t;
using DoubleLanes [[gnu::vector_size(ZELMO_LANE_BYTES)]] = double;
using LongLanes [[gnu::vector_size(ZELMO_LANE_BYTES)]] = std::int64_t;
using ByteLanes [[gnu::vector_size(ZELMO_LANE_BYTES)]] = std::uint8_t;
using WordLanes [[gnu::vector_size(ZELMO_LANE_BYTES)]] = std::uint16_t;

template <typename Lanes>
using LaneValue = std::remove_reference_t<decltype(Lanes{}[0])>;

template <typename Lanes>
constexpr std::int32_t laneCount = sizeof(Lanes) / sizeof(LaneValue<Lanes>);

/// `laneCount` values from memory, of any alignment.
template <typename Lanes>
inline Lanes LoadLanes(const void* values) {
    Lanes lanes;
    std::memcpy(&lanes, values, sizeof lanes);
    return lanes;
}

inline FloatLanes LoadLanes(const float* values) {
    return LoadLanes<FloatLanes>(values);
}
inline IntLanes LoadLanes(const std::int32_t* values) {
    return LoadLanes<IntLanes>(values);
}

template <typename Lanes>
inline void StoreLanes(void* values, const Lanes& lanes) {
    std::memcpy(values, &lanes, sizeof lanes);
}

/// The same value in every lane.
template <typename Lanes>
inline Lanes Broadcast(LaneValue<Lanes> value) {
    return value - Lanes{};  // which keeps a negative zero
}

/// 0, 1, 2 and so on.
template <typename Lanes>
inline Lanes CountingLanes() {
    Lanes lanes{};
    for (std::int32_t i = 0; i < laneCount<Lanes>; ++i) {
        lanes[i] = static_cast<LaneValue<Lanes>>(i);
    }
    return lanes;
}

/// The correctly rounded roots.
template <typename Lanes>
inline Lanes RootLanes(const Lanes& lanes) {
    Lanes roots{};
    for (std::int32_t i = 0; i < laneCount<Lanes>; ++i) {
        if constexpr (sizeof(LaneValue<Lanes>) == sizeof(float)) {
            roots[i] = __builtin_sqrtf(lanes[i]);
        } else {
            roots[i] = __builtin_sqrt(lanes[i]);
        }
    }
    return roots;
}

/// The smaller value of each lane; the second one where one is no number.
inline FloatLanes SmallerLanes(const FloatLanes& a, const FloatLanes& b) {
    return a < b ? a : b;
}

inline IntLanes Smaller(const IntLanes& a, const IntLanes& b) {
    return a < b ? a : b;
}

inline IntLanes Larger(const IntLanes& a, const IntLanes& b) {
    return a > b ? a : b;
}

/// The lanes moved down by `distance`; those that fall out at the end come in on top.
template <std::int32_t distance, std::size_t... lane>
IntLanes Rotated(const IntLanes& values, std::index_sequence<lane...>) {
    return __builtin_shufflevector(values, values,
                                   static_cast<int>((lane + distance) % laneCount<IntLanes>)...);
}

template <std::int32_t distance = laneCount<IntLanes> / 2>
std::int32_t SmallestLane(const IntLanes& values) {
    if constexpr (distance == 0) {
        return values[0];
    } else {
        return SmallestLane<distance / 2>(Smaller(
            values, Rotated<distance>(values, std::make_index_sequence<laneCount<IntLanes>>())));
    }
}

inline std::int32_t LargestLane(const IntLanes& values) {
    return -SmallestLane(-values);
}

/// Whether a condition holds in any lane.
inline bool AnyLane(const IntLanes& condition) {
    const LongLanes pairs = (LongLanes)condition;
    std::int64_t any = 0;
    for (std::int32_t i = 0; i < laneCount<LongLanes>; ++i) {
        any |= pairs[i];
    }
    return any != 0;
}

inline bool AllLanes(const IntLanes& condition) {
    return !AnyLane(~condition);
}

}  // namespace zelmo::ZELMO_LANES
