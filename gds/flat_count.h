#pragma once

#include <cstdint>

namespace zelmo {

/// How many of something there are when all cells are laid out flat. Arrays of arrays hold more
/// than any integer tells.
struct FlatCount {
    std::uint64_t exact = 0;  ///< where `isExact`
    double estimate = 0.0;    ///< always; infinite beyond 1.8e308
    bool isExact = true;

    bool operator==(const FlatCount&) const = default;
};

inline FlatCount CountOf(std::uint64_t number) {
    return {number, static_cast<double>(number), true};
}

FlatCount operator+(const FlatCount& a, const FlatCount& b);
FlatCount operator*(const FlatCount& a, const FlatCount& b);

}  // namespace zelmo
