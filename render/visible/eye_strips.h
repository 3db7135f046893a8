#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "render/visible/layer_stack.h"
#include "render/visible/sight.h"

namespace zelmo {

/// The window seen from above is cut into strips that run from the eye to its back edge, where each
/// is as wide as a square. All ways from a strip to the eye stay in it.
class EyeStrips {
public:
    EyeStrips(const LayerStack& stack, const Sight& sight)
        : eyeCol_(sight.eyeX / stack.spacing),
          eyeRow_(sight.eyeY / stack.spacing),
          eyeHeight_(sight.eye.height),
          farthest_(Away(stack.rows - 1)),
          halfWidth_(std::max(eyeCol_, static_cast<float>(stack.cols) - eyeCol_)) {}

    float WidthAt(std::int32_t row) const { return Away(row) / farthest_; }
    float StripOf(float col, std::int32_t row) const {
        return eyeCol_ + (col - eyeCol_) / WidthAt(row);
    }
    float ColumnOf(float strip, std::int32_t row) const {
        return eyeCol_ + (strip - eyeCol_) * WidthAt(row);
    }

    /// How many columns a way to the eye moves to a side within a row of squares, at most.
    float DriftIn(std::int32_t squareRow) const { return halfWidth_ / Away(squareRow) + 0.01f; }

    /// How far a way to the eye rises within a row of squares for each unit below the eye.
    float RiseIn(std::int32_t squareRow) const { return 1.0f / Away(squareRow); }

    float EyeHeight() const { return eyeHeight_; }

private:
    float Away(std::int32_t row) const { return static_cast<float>(row) - eyeRow_; }

    float eyeCol_;
    float eyeRow_;
    float eyeHeight_;
    float farthest_;
    float halfWidth_;
};

/// Calls `work(first, end, shift)` for pieces of the range in which floor(position(i)) is i +
/// shift. The position changes by nearly 1 from one i to the next.
template <typename Position, typename Work>
void ForEachShift(std::int32_t first, std::int32_t end, Position&& position, Work&& work) {
    constexpr std::int32_t most = 64;
    const auto shiftOf = [&](std::int32_t i) {
        return static_cast<std::int32_t>(std::floor(position(static_cast<float>(i)))) - i;
    };
    for (std::int32_t i = first; i < end;) {
        const std::int32_t shift = shiftOf(i);
        std::int32_t count = std::min(most, end - i);
        while (shiftOf(i + count - 1) != shift) {
            count /= 2;
        }
        work(i, i + count, shift);
        i += count;
    }
}

}  // namespace zelmo
