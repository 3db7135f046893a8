#include "render/visible/shadows.h"

#include <algorithm>
#include <cstddef>
#include <limits>

#include "base/row_bands.h"
#include "render/visible/eye_strips.h"

namespace zelmo {

namespace {

constexpr float farAway = std::numeric_limits<float>::max();
constexpr std::int32_t fewestColumns = 128;  // for a thread

/// Heights between a lowest and a highest one, by column or strip; none where these are the wrong
/// way round, and at the start.
class HeightsRow {
public:
    HeightsRow(std::int32_t first, std::int32_t end)
        : first_(first),
          lowest_(static_cast<std::size_t>(end - first), farAway),
          highest_(lowest_.size(), -farAway) {}

    std::int32_t First() const { return first_; }
    std::int32_t End() const { return first_ + static_cast<std::int32_t>(lowest_.size()); }
    float* Lowest(std::int32_t i) { return lowest_.data() + (i - first_); }
    float* Highest(std::int32_t i) { return highest_.data() + (i - first_); }
    const float* Lowest(std::int32_t i) const { return lowest_.data() + (i - first_); }
    const float* Highest(std::int32_t i) const { return highest_.data() + (i - first_); }

private:
    std::int32_t first_;
    std::vector<float> lowest_;
    std::vector<float> highest_;
};

/// Heights between a lowest and a highest one; none where these are the wrong way round.
struct Heights {
    float lowest;
    float highest;
};

/// The heights that so many neighbours have in common.
Heights CommonOf(const float* lowest, const float* highest, std::int32_t count) {
    Heights common{lowest[0], highest[0]};
    for (std::int32_t k = 1; k < count; ++k) {
        common.lowest = std::max(common.lowest, lowest[k]);
        common.highest = std::min(common.highest, highest[k]);
    }
    return common;
}

/// The inside of a layer above a height, row by row from the front: the heights that a place and
/// the one before it, on the way to the eye, have in common.
class Inside {
public:
    Inside(const MeshWindow& window, float above, float depth, std::int32_t first, std::int32_t end)
        : window_(window),
          above_(above),
          depth_(depth),
          first_(std::max(first, 0)),
          end_(std::min(end, window.cols)),
          inside_(first, end) {}

    const HeightsRow& At(std::int32_t row) {
        if (row > 0) {
            const std::size_t here = window_.GridIndex(first_, row);
            const std::size_t before = window_.GridIndex(first_, row - 1);
            const float* bottoms = window_.layer.bottom.data();
            const float* tops = window_.layer.top.data();
            float* lowest = inside_.Lowest(first_);
            float* highest = inside_.Highest(first_);
            for (std::size_t i = 0; i < static_cast<std::size_t>(end_ - first_); ++i) {
                lowest[i] = std::max(above_, std::max(bottoms[here + i], bottoms[before + i]));
                highest[i] = std::min(tops[here + i], tops[before + i]) - depth_;
            }
        }
        return inside_;
    }

private:
    const MeshWindow& window_;
    float above_;
    float depth_;
    std::int32_t first_;
    std::int32_t end_;
    HeightsRow inside_;
};

/// Columns and strips that a thread looks at, to find the shadow over some columns of squares.
struct Reach {
    std::int32_t firstStrip;
    std::int32_t endStrip;
    std::int32_t firstCol;
    std::int32_t endCol;
};

Reach FindReach(const EyeStrips& strips, std::int32_t lastRow, std::int32_t firstCol,
                std::int32_t endCol) {
    constexpr float spare = 8.0f;
    const float left = static_cast<float>(firstCol) - strips.DriftIn(0) - spare;
    const float right = static_cast<float>(endCol) + strips.DriftIn(0) + spare;
    const float first = std::min(strips.StripOf(left, 0), strips.StripOf(left, lastRow));
    const float end = std::max(strips.StripOf(right, 0), strips.StripOf(right, lastRow));
    const float outerLeft = std::min(strips.ColumnOf(first, 0), strips.ColumnOf(first, lastRow));
    const float outerRight = std::max(strips.ColumnOf(end, 0), strips.ColumnOf(end, lastRow));
    return {static_cast<std::int32_t>(first), static_cast<std::int32_t>(end) + 1,
            static_cast<std::int32_t>(outerLeft - spare),
            static_cast<std::int32_t>(outerRight + spare)};
}

/// A strip is no wider than a square and drifts by less than half of one within a row of squares.
/// Where a strip is much narrower at the front than at the back there are too many of them.
constexpr std::int32_t columnsOfStrip = 4;
constexpr float mostDrift = 0.45f;
constexpr float leastWidth = 0.5f;

/// Sweeps strips from the front to the back, and tells what is hidden in them.
class Sweep {
public:
    Sweep(const EyeStrips& strips, const Reach& reach)
        : strips_(strips), hidden_(reach.firstStrip, reach.endStrip) {}

    /// From the row before to this one: what was hidden there, seen from farther away, and what is
    /// in the inside here.
    void Advance(std::int32_t row, const HeightsRow& inside) {
        const float drift = strips_.DriftIn(row);
        ForEachShift(
            hidden_.First(), hidden_.End(),
            [&](float strip) { return strips_.ColumnOf(strip, row) - drift; },
            [&](std::int32_t first, std::int32_t end, std::int32_t shift) {
                AdvanceStrips(row, first, end, inside.Lowest(first + shift),
                              inside.Highest(first + shift));
            });
    }

    /// Writes what is hidden of the squares of the row of squares behind a row.
    void Write(std::int32_t squareRow, std::int32_t firstCol, std::int32_t endCol, float* lowest,
               float* highest) const {
        const float drift = strips_.DriftIn(squareRow);
        const auto count =
            2 + static_cast<std::int32_t>((1.0f + 2.0f * drift) / strips_.WidthAt(squareRow));
        ForEachShift(
            firstCol, endCol, [&](float col) { return strips_.StripOf(col - drift, squareRow); },
            [&](std::int32_t first, std::int32_t end, std::int32_t shift) {
                const float* lowestHidden = hidden_.Lowest(first + shift);
                const float* highestHidden = hidden_.Highest(first + shift);
                for (std::int32_t i = 0; i < end - first; ++i) {
                    const Heights all = CommonOf(lowestHidden + i, highestHidden + i, count);
                    lowest[first + i] = all.lowest;
                    highest[first + i] = all.highest;
                }
            });
        const float rise = strips_.RiseIn(squareRow);
        for (std::int32_t col = firstCol; col < endCol; ++col) {
            highest[col] -= (strips_.EyeHeight() - lowest[col]) * rise;
        }
    }

private:
    void AdvanceStrips(std::int32_t row, std::int32_t first, std::int32_t end,
                       const float* lowestInside, const float* highestInside) {
        const float eye = strips_.EyeHeight();
        const float fall = strips_.RiseIn(row - 1);
        const float loss = eye * 1e-6f;  // more than the roundings of a row
        float* lowest = hidden_.Lowest(first);
        float* highest = hidden_.Highest(first);
        for (std::int32_t i = 0; i < end - first; ++i) {
            const auto [lowHere, highHere] =
                CommonOf(lowestInside + i, highestInside + i, columnsOfStrip);
            const float low = lowest[i] - (eye - lowest[i]) * fall + loss;
            const float high = highest[i] - (eye - highest[i]) * fall - loss;
            // Both where they touch, else the larger one.
            const bool touch = std::max(low, lowHere) <= std::min(high, highHere);
            const bool isHere = highHere - lowHere > high - low;
            lowest[i] = touch ? std::min(low, lowHere) : isHere ? lowHere : low;
            highest[i] = touch ? std::max(high, highHere) : isHere ? highHere : high;
        }
    }

    const EyeStrips& strips_;
    HeightsRow hidden_;
};

/// The largest of the values that `valueOf(top, bottom)` gives at the places of a layer.
template <typename ValueOf>
float LargestOf(const MeshWindow& window, ValueOf&& valueOf) {
    std::vector<float> largest(static_cast<std::size_t>(window.cols), -farAway);
    for (std::int32_t row = 0; row < window.rows; ++row) {
        const float* tops = window.layer.top.data() + window.GridIndex(0, row);
        const float* bottoms = window.layer.bottom.data() + window.GridIndex(0, row);
        for (std::size_t i = 0; i < largest.size(); ++i) {
            largest[i] = std::max(largest[i], valueOf(tops[i], bottoms[i]));
        }
    }
    return *std::max_element(largest.begin(), largest.end());
}

float HighestTop(const MeshWindow& window) {
    return LargestOf(window, [](float top, float) { return top; });
}

/// How thick a layer is above a height, at most.
float MostAbove(const MeshWindow& window, float height) {
    return LargestOf(window,
                     [height](float top, float bottom) { return top - std::max(bottom, height); });
}

Shadow CastShadow(const LayerStack& stack, const EyeStrips& strips, float depth, std::size_t layer,
                  float above) {
    Shadow shadow;
    const std::size_t squares = stack.Squares() * static_cast<std::size_t>(stack.rows - 1);
    shadow.lowest = std::make_unique_for_overwrite<float[]>(squares);
    shadow.highest = std::make_unique_for_overwrite<float[]>(squares);
    ForRowBands(stack.cols - 1, fewestColumns, [&](std::int32_t first, std::int32_t end) {
        const Reach reach = FindReach(strips, stack.rows - 1, first, end);
        Inside inside(stack.layers[layer], above, depth, reach.firstCol, reach.endCol);
        Sweep sweep(strips, reach);
        for (std::int32_t row = 0; row + 1 < stack.rows; ++row) {
            sweep.Advance(row, inside.At(row));
            const std::size_t start = static_cast<std::size_t>(row) * stack.Squares();
            sweep.Write(row, first, end, shadow.lowest.get() + start, shadow.highest.get() + start);
        }
    });
    return shadow;
}

/// Of opaque layers that follow each other in the stack, the one that is thickest above what shows
/// through: the others' shadows are hardly larger.
struct Screen {
    std::size_t layer = 0;
    float thickness = 0.0f;
};

}  // namespace

std::vector<Shadow> FindShadows(const LayerStack& stack, const Sight& sight) {
    std::vector<Shadow> shadows;
    const EyeStrips strips(stack, sight);
    if (!(strips.DriftIn(0) <= mostDrift && strips.WidthAt(0) >= leastWidth)) {
        return shadows;
    }
    float above = -farAway;
    Screen screen;
    const auto cast = [&] {
        if (screen.thickness > sight.hidingDepth) {
            shadows.push_back(CastShadow(stack, strips, sight.hidingDepth, screen.layer, above));
        }
        screen = {};
    };
    for (std::size_t layer = 0; layer < stack.layers.size(); ++layer) {
        const MeshWindow& window = stack.layers[layer];
        if (!IsOpaque(window.layer)) {
            cast();
            above = std::max(above, HighestTop(window));
        } else if (above > -farAway) {
            const float thickness = MostAbove(window, above);
            screen = thickness > screen.thickness ? Screen{layer, thickness} : screen;
        }
    }
    cast();
    return shadows;
}

}  // namespace zelmo
