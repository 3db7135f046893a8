#include "results/models/plane_predicates.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdlib>

namespace zelmo {

namespace {

/// The determinant that tells the side of the circle, in numbers wide enough for it.
template <typename Wide>
bool IsInCircle(const std::array<std::array<std::int64_t, 2>, 3>& offsets) {
    const auto& [a, b, c] = offsets;
    const auto length = [](const std::array<std::int64_t, 2>& v) {
        return static_cast<Wide>(v[0]) * v[0] + static_cast<Wide>(v[1]) * v[1];
    };
    const auto cross = [](const std::array<std::int64_t, 2>& v,
                          const std::array<std::int64_t, 2>& w) {
        return static_cast<Wide>(v[0]) * w[1] - static_cast<Wide>(v[1]) * w[0];
    };
    return length(a) * cross(b, c) + length(b) * cross(c, a) + length(c) * cross(a, b) > 0;
}

/// Numbers that look random, the same everywhere.
std::uint32_t Scrambled(std::uint32_t value) {
    value = (value ^ (value >> 16)) * 0x7FEB352Du;
    value = (value ^ (value >> 15)) * 0x846CA68Bu;
    return value ^ (value >> 16);
}

/// The place of a point on the curve of Hilbert through a square of 2^16 by 2^16.
std::uint32_t PlaceOnCurve(std::uint32_t x, std::uint32_t y) {
    std::uint32_t place = 0;
    for (std::uint32_t side = 1u << 15; side > 0; side >>= 1) {
        const std::uint32_t right = (x & side) != 0 ? 1 : 0;
        const std::uint32_t upper = (y & side) != 0 ? 1 : 0;
        place = 4 * place + ((3 * right) ^ upper);
        if (upper == 0) {
            if (right != 0) {
                x = ~x;
                y = ~y;
            }
            std::swap(x, y);
        }
    }
    return place;
}

}  // namespace

bool LiesInCircle(const PlanePoint& a, const PlanePoint& b, const PlanePoint& c,
                  const PlanePoint& point) {
    std::array<std::array<std::int64_t, 2>, 3> offsets{};
    std::int64_t greatest = 0;
    std::size_t next = 0;
    for (const PlanePoint* const corner : {&a, &b, &c}) {
        offsets[next] = {std::int64_t{corner->x} - point.x, std::int64_t{corner->y} - point.y};
        greatest = std::max({greatest, std::abs(offsets[next][0]), std::abs(offsets[next][1])});
        ++next;
    }
    // Three products of up to 4 times the fourth power of an offset.
    constexpr std::int64_t greatestForShort = 29000;
    __extension__ using Wide = __int128;
    return greatest <= greatestForShort ? IsInCircle<std::int64_t>(offsets)
                                        : IsInCircle<Wide>(offsets);
}

std::vector<std::uint32_t> InsertionOrder(const std::vector<PlanePoint>& points) {
    struct Key {
        std::uint64_t order;
        std::uint32_t point;
    };
    std::uint32_t all = 1;
    for (const PlanePoint& point : points) {
        all |= static_cast<std::uint32_t>(point.x) | static_cast<std::uint32_t>(point.y);
    }
    // The curve through coordinates of 16 bits.
    const int width = std::bit_width(all);
    const auto scaled = [&](std::int32_t coordinate) {
        const auto value = static_cast<std::uint32_t>(coordinate);
        return width > 16 ? value >> (width - 16) : value << (16 - width);
    };
    std::vector<Key> keys;
    keys.reserve(points.size());
    for (std::uint32_t i = 0; i < points.size(); ++i) {
        const int round = 32 - std::countl_zero(Scrambled(i) | 1u);
        keys.push_back({(static_cast<std::uint64_t>(round) << 32) |
                            PlaceOnCurve(scaled(points[i].x), scaled(points[i].y)),
                        i});
    }
    std::sort(keys.begin(), keys.end(), [](const Key& a, const Key& b) {
        return a.order != b.order ? a.order < b.order : a.point < b.point;
    });
    std::vector<std::uint32_t> order;
    order.reserve(keys.size());
    for (const Key& key : keys) {
        order.push_back(key.point);
    }
    return order;
}

}  // namespace zelmo
