#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

// Vector lanes: the same operation on several neighbouring values at once, with the roundings of
// one at a time. A file of lane kernels is compiled twice (cmake/compiler.cmake,
// zelmo_lane_kernels): once for every x86-64 machine, into the namespace `narrow`, and once for
// machines with AVX2, into the namespace `wide`. Such a file
//   - includes this header last: what follows it is code for the chosen machines, and nothing that
//     other files share may be compiled so;
//   - holds its functions in `namespace zelmo::ZELMO_LANES`;
//   - throws nothing and allocates nothing: the caller hands it its arrays.
// Its header declares them with ZELMO_DECLARE_LANE_KERNEL and callers pick with ZELMO_PICK_LANES.

namespace zelmo {

/// Whether this machine has the wide lanes and nobody has switched them off.
bool HasWideLanes();

/// For comparisons: switches to the narrow lanes, or back to the widest that the machine has.
void AllowWideLanes(bool allowed);

}  // namespace zelmo

/// Declares a lane kernel for both widths: ZELMO_DECLARE_LANE_KERNEL(void Fill(float* out, int n));
#define ZELMO_DECLARE_LANE_KERNEL(...) \
    namespace narrow {                 \
    __VA_ARGS__;                       \
    }                                  \
    namespace wide {                   \
    __VA_ARGS__;                       \
    }

/// The kernel of that name for this machine: ZELMO_PICK_LANES(Fill)(out, n);
#define ZELMO_PICK_LANES(kernel) (::zelmo::HasWideLanes() ? &wide::kernel : &narrow::kernel)

#ifdef ZELMO_LANES

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
inline Lanes EqualLanes(LaneValue<Lanes> value) {
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

#endif
