#include "render/visible/visible_lanes.h"

#include <cstdint>
#include <cstring>

#include "base/padded_rows.h"

#include "base/lane_code.h"

namespace zelmo::ZELMO_LANES {

namespace {

constexpr std::int32_t lanes = laneCount<FloatLanes>;
static_assert(lanes <= rowPadding);

FloatLanes Larger(const FloatLanes& a, const FloatLanes& b) {
    return a > b ? a : b;
}

FloatLanes Magnitude(const FloatLanes& a) {
    return Larger(a, -a);
}

/// The largest whole number up to each lane, for anything that can be on a picture.
FloatLanes Floor(const FloatLanes& a) {
    const FloatLanes far = FloatLanes{} + 1e6f;
    const IntLanes whole = __builtin_convertvector(SmallerLanes(Larger(a, -far), far), IntLanes);
    const FloatLanes truncated = __builtin_convertvector(whole, FloatLanes);
    return truncated > a ? truncated - 1.0f : truncated;
}

/// The opaque layer next above while a stack is walked through: its index, or -1, and its heights.
struct Above {
    IntLanes layer;
    FloatLanes bottom;
    FloatLanes top;
};

Above Nothing() {
    return {IntLanes{} - 1, FloatLanes{}, FloatLanes{}};
}

/// From the uppermost layer down: the opaque layer next above.
void FindLayerAbove(const SheetRow* layers, std::int32_t layerCount, const FloatLanes& depth,
                    std::int32_t col) {
    const IntLanes none = IntLanes{} - 1;
    Above above = Nothing();
    for (std::int32_t index = layerCount; index-- > 0;) {
        const SheetRow& layer = layers[index];
        const FloatLanes top = LoadLanes(layer.top + col);
        const FloatLanes bottom = LoadLanes(layer.bottom + col);
        const IntLanes thick = ~(top - bottom == 0.0f);
        const IntLanes isCovered =
            (above.layer >= 0) & (above.bottom <= top) & (top + depth <= above.top);
        StoreLanes(layer.thick + col, thick);
        StoreLanes(layer.aboveUpper + col, isCovered ? above.layer : none);
        if (layer.isOpaque) {
            const IntLanes self = none + (index + 1);
            StoreLanes(layer.aboveLower + col, bottom + depth <= top ? self : none);
            above.layer = thick ? self : above.layer;
            above.bottom = thick ? bottom : above.bottom;
            above.top = thick ? top : above.top;
        } else {
            StoreLanes(layer.aboveLower + col, none);
            above = Nothing();
        }
    }
}

/// From the lowest layer up: the layer next below.
void FindLayerBelow(const SheetRow* layers, std::int32_t layerCount, std::int32_t col,
                    FloatLanes& lowest, FloatLanes& highest, FloatLanes& sum) {
    const IntLanes none = IntLanes{} - 1;
    IntLanes below = none;
    FloatLanes belowTop{};
    for (std::int32_t index = 0; index < layerCount; ++index) {
        const SheetRow& layer = layers[index];
        const FloatLanes top = LoadLanes(layer.top + col);
        const FloatLanes bottom = LoadLanes(layer.bottom + col);
        const IntLanes thick = LoadLanes(layer.thick + col);
        StoreLanes(layer.standsOn + col, belowTop == bottom ? below : none);
        below = thick ? none + (index + 1) : below;
        belowTop = thick ? top : belowTop;
        lowest = SmallerLanes(lowest, SmallerLanes(top, bottom));
        highest = Larger(highest, Larger(top, bottom));
        sum += top * 0.0f + bottom * 0.0f;
    }
}

IntLanes EqualLayers(const IntLanes& a, const IntLanes& b, const IntLanes& c) {
    return (a >= 0) & (a == b) & (a == c);
}

/// Corners of a square or a triangle on the picture.
struct Corner {
    FloatLanes x;
    FloatLanes y;
};

/// On which side of an edge a place lies, and how that changes from pixel to pixel. Negative where
/// the place is outside by more than the margin.
struct Side {
    FloatLanes start;
    FloatLanes perX;
    FloatLanes perY;
};

/// `turn` is 1 for triangles whose inside is to the left of their edges, else -1.
Side SideOf(const Corner& a, const Corner& b, const FloatLanes& turn, const FloatLanes& x,
            const FloatLanes& y, float margin) {
    const FloatLanes dx = (b.x - a.x) * turn;
    const FloatLanes dy = (b.y - a.y) * turn;
    const FloatLanes reach = (Magnitude(dx) + Magnitude(dy)) * margin;
    return {dx * (y - a.y) - dy * (x - a.x) + reach, -dy, dx};
}

/// Whether the triangle covers none of the pixels' centres, which lie at halves.
IntLanes CoversNothing(const Corner& a, const Corner& b, const Corner& c, float margin) {
    const FloatLanes left = SmallerLanes(a.x, SmallerLanes(b.x, c.x)) - margin;
    const FloatLanes right = Larger(a.x, Larger(b.x, c.x)) + margin;
    const FloatLanes low = SmallerLanes(a.y, SmallerLanes(b.y, c.y)) - margin;
    const FloatLanes high = Larger(a.y, Larger(b.y, c.y)) + margin;
    // The first centres at or after the box's lower left corner.
    const FloatLanes nearX = Floor(left + 0.5f) + 0.5f;
    const FloatLanes nearY = Floor(low + 0.5f) + 0.5f;
    const FloatLanes x = nearX < left ? nearX + 1.0f : nearX;
    const FloatLanes y = nearY < low ? nearY + 1.0f : nearY;
    const FloatLanes area = (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
    const FloatLanes one = FloatLanes{} + 1.0f;
    const FloatLanes turn = area < 0.0f ? -one : one;
    const Side ab = SideOf(a, b, turn, x, y, margin);
    const Side bc = SideOf(b, c, turn, x, y, margin);
    const Side ca = SideOf(c, a, turn, x, y, margin);
    // The triangle misses a centre that is outside one of its edges or behind its box.
    const auto misses = [&](float right1, float up1) {
        const auto at = [&](const Side& side) {
            return side.start + side.perX * right1 + side.perY * up1;
        };
        return (at(ab) < 0.0f) | (at(bc) < 0.0f) | (at(ca) < 0.0f);
    };
    const IntLanes noneX = x > right;
    const IntLanes noneY = y > high;
    const IntLanes oneX = x + 1.0f > right;
    const IntLanes oneY = y + 1.0f > high;
    const IntLanes fewX = x + 2.0f > right;
    const IntLanes fewY = y + 2.0f > high;
    return noneX | noneY |
           (fewX & fewY & misses(0.0f, 0.0f) & (oneX | misses(1.0f, 0.0f)) &
            (oneY | misses(0.0f, 1.0f)) & (oneX | oneY | misses(1.0f, 1.0f)));
}

}  // namespace

void FindNeighbourLayers(const SheetRow* layers, std::int32_t layerCount, const float* depth,
                         std::int32_t cols, HeightRange& range) {
    FloatLanes lowest = Broadcast<FloatLanes>(range.lowest);
    FloatLanes highest = Broadcast<FloatLanes>(range.highest);
    FloatLanes sum{};
    for (std::int32_t col = 0; col < cols; col += lanes) {
        FindLayerAbove(layers, layerCount, LoadLanes(depth + col), col);
        FindLayerBelow(layers, layerCount, col, lowest, highest, sum);
    }
    for (std::int32_t i = 0; i < lanes; ++i) {
        range.lowest = lowest[i] < range.lowest ? lowest[i] : range.lowest;
        range.highest = highest[i] > range.highest ? highest[i] : range.highest;
        range.sum += sum[i];
    }
}

void FindBuriedSquares(const IndexRows& inside, const HeightRows& heights, const EyeRange& eye,
                       std::int32_t squares, std::int32_t* buried) {
    constexpr float leastTilt = 0.05f;  // of a square, as the eye sees it from the farthest place
    const float lift = eye.height - leastTilt * (eye.height + eye.farthest);
    for (std::int32_t col = 0; col < squares; col += lanes) {
        const IntLanes layer = LoadLanes(inside.front + col);
        const IntLanes same =
            EqualLayers(layer, LoadLanes(inside.front + col + 1), LoadLanes(inside.back + col)) &
            (layer == LoadLanes(inside.back + col + 1));
        const FloatLanes z00 = LoadLanes(heights.front + col);
        const FloatLanes z10 = LoadLanes(heights.front + col + 1);
        const FloatLanes z01 = LoadLanes(heights.back + col);
        const FloatLanes z11 = LoadLanes(heights.back + col + 1);
        const FloatLanes fall = SmallerLanes(SmallerLanes(z01 - z00, z11 - z10), FloatLanes{});
        const FloatLanes tilt = Larger(Magnitude(z10 - z00), Magnitude(z11 - z01));
        const FloatLanes highest = Larger(Larger(z00, z10), Larger(z01, z11));
        const IntLanes facesEye =
            (lift - highest) * eye.spacing + fall * eye.farthest - tilt * eye.sideways > 0.0f;
        StoreLanes(buried + col, same & facesEye);
    }
}

void PackMasks(const std::int32_t* const* masks, std::int32_t squares, std::uint8_t* bytes) {
    using FewBytes [[gnu::vector_size(lanes)]] = std::int8_t;
    std::int32_t col = 0;
    for (; col + lanes <= squares; col += lanes) {
        IntLanes bits{};
        for (std::int32_t i = 0; i < 6; ++i) {
            bits |= LoadLanes(masks[i] + col) & (1 << i);
        }
        StoreLanes(bytes + col, __builtin_convertvector(bits, FewBytes));
    }
    for (; col < squares; ++col) {
        std::int32_t bits = 0;
        for (std::int32_t i = 0; i < 6; ++i) {
            bits |= masks[i][col] & (1 << i);
        }
        bytes[col] = static_cast<std::uint8_t>(bits);
    }
}

bool FindTriangles(const IndexRows& thick, std::int32_t squares, const TriangleMasks* three) {
    IntLanes any{};
    for (std::int32_t col = 0; col < squares; col += lanes) {
        const IntLanes frontLeft = LoadLanes(thick.front + col);
        const IntLanes frontRight = LoadLanes(thick.front + col + 1);
        const IntLanes backLeft = LoadLanes(thick.back + col);
        const IntLanes backRight = LoadLanes(thick.back + col + 1);
        const IntLanes fronts = frontLeft | frontRight | backLeft;
        const IntLanes backs = frontRight | backLeft | backRight;
        for (std::int32_t i = 0; i < 3; ++i) {
            StoreLanes(three[i].front + col, fronts);
            StoreLanes(three[i].back + col, backs);
        }
        any |= fronts | backs;
    }
    return AnyLane(any);
}

bool RemoveStanding(const IndexRows& standsOn, std::int32_t squares,
                    const TriangleMasks& triangles) {
    IntLanes any{};
    for (std::int32_t col = 0; col < squares; col += lanes) {
        const IntLanes right = LoadLanes(standsOn.front + col + 1);
        const IntLanes back = LoadLanes(standsOn.back + col);
        const IntLanes front = EqualLayers(right, back, LoadLanes(standsOn.front + col));
        const IntLanes last = EqualLayers(right, back, LoadLanes(standsOn.back + col + 1));
        const IntLanes fronts = LoadLanes(triangles.front + col) & ~front;
        const IntLanes backs = LoadLanes(triangles.back + col) & ~last;
        StoreLanes(triangles.front + col, fronts);
        StoreLanes(triangles.back + col, backs);
        any |= fronts | backs;
    }
    return AnyLane(any);
}

bool RemoveBuried(const std::int32_t* const* buriedRows, std::int32_t squares,
                  const TriangleMasks& triangles) {
    IntLanes any{};
    for (std::int32_t col = 0; col < squares; col += lanes) {
        IntLanes buried = IntLanes{} - 1;
        for (std::int32_t row = 0; row < 2; ++row) {
            for (std::int32_t side = -1; side <= 1; ++side) {
                buried &= LoadLanes(buriedRows[row] + col + side);
            }
        }
        const IntLanes fronts = LoadLanes(triangles.front + col) & ~buried;
        const IntLanes backs = LoadLanes(triangles.back + col) & ~buried;
        StoreLanes(triangles.front + col, fronts);
        StoreLanes(triangles.back + col, backs);
        any |= fronts | backs;
    }
    return AnyLane(any);
}

void RemoveShadowed(const HeightRows& heights, const ShadowRow& shadow, std::int32_t squares,
                    const TriangleMasks& triangles) {
    std::int32_t col = 0;
    for (; col + lanes <= squares; col += lanes) {
        const FloatLanes lowest = LoadLanes(shadow.lowest + col);
        const FloatLanes highest = LoadLanes(shadow.highest + col);
        if (!AnyLane(lowest <= highest)) {
            continue;
        }
        const FloatLanes z00 = LoadLanes(heights.front + col);
        const FloatLanes z10 = LoadLanes(heights.front + col + 1);
        const FloatLanes z01 = LoadLanes(heights.back + col);
        const FloatLanes z11 = LoadLanes(heights.back + col + 1);
        const IntLanes isSeen =
            (SmallerLanes(SmallerLanes(z00, z10), SmallerLanes(z01, z11)) < lowest) |
            (Larger(Larger(z00, z10), Larger(z01, z11)) > highest);
        StoreLanes(triangles.front + col, LoadLanes(triangles.front + col) & isSeen);
        StoreLanes(triangles.back + col, LoadLanes(triangles.back + col) & isSeen);
    }
}

void ProjectRow(const Projection& p, const float* heights, std::int32_t cols,
                const PixelRow& pixels) {
    FloatLanes number = __builtin_convertvector(CountingLanes<IntLanes>(), FloatLanes);
    for (std::int32_t col = 0; col < cols + 1; col += lanes) {
        const FloatLanes z = LoadLanes(heights + col);
        const FloatLanes x = p.xStart + p.xPerCol * number + p.xPerHeight * z;
        const FloatLanes y = p.yStart + p.yPerCol * number + p.yPerHeight * z;
        const FloatLanes w = p.wStart + p.wPerCol * number + p.wPerHeight * z;
        StoreLanes(pixels.x + col, x / w * p.xScale + p.xCentre);
        StoreLanes(pixels.y + col, y / w * p.yScale + p.yCentre);
        number += static_cast<float>(lanes);
    }
}

void RemoveUncovering(const PixelRow& front, const PixelRow& back, float margin,
                      std::int32_t squares, const TriangleMasks& triangles) {
    for (std::int32_t col = 0; col < squares; col += lanes) {
        const IntLanes fronts = LoadLanes(triangles.front + col);
        const IntLanes backs = LoadLanes(triangles.back + col);
        if (!AnyLane(fronts | backs)) {
            continue;
        }
        const Corner frontLeft{LoadLanes(front.x + col), LoadLanes(front.y + col)};
        const Corner frontRight{LoadLanes(front.x + col + 1), LoadLanes(front.y + col + 1)};
        const Corner backLeft{LoadLanes(back.x + col), LoadLanes(back.y + col)};
        const Corner backRight{LoadLanes(back.x + col + 1), LoadLanes(back.y + col + 1)};
        StoreLanes(triangles.front + col,
                   fronts & ~CoversNothing(frontLeft, frontRight, backLeft, margin));
        StoreLanes(triangles.back + col,
                   backs & ~CoversNothing(frontRight, backRight, backLeft, margin));
    }
}

}  // namespace zelmo::ZELMO_LANES
