#include "render/slide/scale_bars.h"

#include <algorithm>
#include <cmath>

#include "render/picture_texts.h"

namespace zelmo {

namespace {

constexpr double gap = 14.0;          // from the edge to its bar, in pixels of a usual picture
constexpr double shortestEdge = 6.0;  // ditto, of which a length can be told
constexpr double longEnough = 40.0;   // ditto, for a bar that is but a part of its edge
constexpr double usualShare = 0.3;    // of an edge, that a bar takes at most

/// The largest of 1, 2, 5, 10, 20, 50 ... that is not above this length; 0 if there is none.
double RoundLength(double most) {
    if (!(most > 0.0) || !std::isfinite(most)) {
        return 0.0;
    }
    const double power = std::pow(10.0, std::floor(std::log10(most)));
    constexpr double exact = 1.0 + 1e-9;
    for (const double digit : {10.0, 5.0, 2.0}) {
        if (digit * power <= most * exact) {
            return digit * power;
        }
    }
    return power;
}

/// The four edges of the box along an axis.
std::array<std::pair<Vector3, Vector3>, 4> EdgesAlong(const Vector3& size, std::size_t axis) {
    std::array<std::pair<Vector3, Vector3>, 4> edges{};
    const std::size_t second = (axis + 1) % 3;
    const std::size_t third = (axis + 2) % 3;
    for (unsigned i = 0; i < edges.size(); ++i) {
        Vector3 from{};
        from[second] = (i & 1) != 0 ? size[second] : 0.0f;
        from[third] = (i & 2) != 0 ? size[third] : 0.0f;
        Vector3 to = from;
        to[axis] = size[axis];
        edges[i] = {from, to};
    }
    return edges;
}

/// The edge if the whole box lies on one side of it.
std::optional<OutlineEdge> OnOutline(const Projector& projector, const Vector3& size,
                                     const std::pair<Vector3, Vector3>& ends) {
    const PixelPoint a = projector.At(ends.first);
    const PixelPoint b = projector.At(ends.second);
    const double length = std::hypot(b.x - a.x, b.y - a.y);
    if (!(length > 0.0)) {
        return std::nullopt;
    }
    const PixelPoint left{-(b.y - a.y) / length, (b.x - a.x) / length};
    double most = 0.0;
    double least = 0.0;
    for (unsigned corner = 0; corner < 8; ++corner) {
        const PixelPoint p =
            projector.At({(corner & 1) != 0 ? size[0] : 0.0f, (corner & 2) != 0 ? size[1] : 0.0f,
                          (corner & 4) != 0 ? size[2] : 0.0f});
        const double beyond = (p.x - a.x) * left.x + (p.y - a.y) * left.y;
        most = std::max(most, beyond);
        least = std::min(least, beyond);
    }
    constexpr double rounding = 0.05;  // pixels
    if (most <= rounding) {
        return OutlineEdge{ends.first, ends.second, left, length};
    }
    if (least >= -rounding) {
        return OutlineEdge{ends.first, ends.second, {-left.x, -left.y}, length};
    }
    return std::nullopt;
}

/// Whether an edge suits its axis better than another one. What is nearly the same decides
/// nothing, as rounding would.
bool IsBetter(const OutlineEdge& edge, const OutlineEdge& other, const Projector& projector,
              std::size_t axis) {
    const auto middle = [&](const OutlineEdge& of) {
        const PixelPoint a = projector.At(of.from);
        const PixelPoint b = projector.At(of.to);
        return PixelPoint{(a.x + b.x) * 0.5, (a.y + b.y) * 0.5};
    };
    const PixelPoint here = middle(edge);
    const PixelPoint there = middle(other);
    constexpr double same = 0.5;  // pixels
    const double lower = there.y - here.y;
    const double further = axis == 1 ? here.x - there.x : there.x - here.x;
    const double first = axis == 2 ? further : lower;
    const double second = axis == 2 ? lower : further;
    return std::abs(first) > same ? first > 0.0 : second > same;
}

/// A bar at the end of the edge that lies further to the left or below.
ScaleBar BarBeside(const OutlineEdge& edge, const Projector& projector, std::size_t axis,
                   double length, double unit) {
    const auto at = [&](double along) {
        Vector3 place = edge.from;
        place[axis] = static_cast<float>(along);
        const PixelPoint p = projector.At(place);
        return PixelPoint{p.x + edge.outward.x * gap * unit, p.y + edge.outward.y * gap * unit};
    };
    const double whole = static_cast<double>(edge.to[axis]);
    const PixelPoint start = at(0.0);
    const PixelPoint end = at(whole);
    const bool fromStart =
        std::abs(end.x - start.x) > std::abs(end.y - start.y) ? start.x <= end.x : start.y <= end.y;
    return {fromStart ? start : end, fromStart ? at(length) : at(whole - length), edge.outward,
            std::string(1, "xyz"[axis]) + ": " + LengthText(length)};
}

}  // namespace

std::optional<OutlineEdge> FindOutlineEdge(const Projector& projector, const Vector3& size,
                                           std::size_t axis) {
    std::optional<OutlineEdge> best;
    for (const auto& ends : EdgesAlong(size, axis)) {
        const std::optional<OutlineEdge> edge = OnOutline(projector, size, ends);
        if (edge && (!best || IsBetter(*edge, *best, projector, axis))) {
            best = edge;
        }
    }
    return best;
}

std::vector<ScaleBar> FindScaleBars(const Projector& projector, const Vector3& size, double unit) {
    std::vector<ScaleBar> bars;
    for (std::size_t axis = 0; axis < 3; ++axis) {
        const std::optional<OutlineEdge> edge = FindOutlineEdge(projector, size, axis);
        if (!edge || edge->length < shortestEdge * unit) {
            continue;
        }
        const double whole = static_cast<double>(size[axis]);
        const bool isLong = edge->length * usualShare >= longEnough * unit;
        const double length = RoundLength(isLong ? whole * usualShare : whole);
        if (length > 0.0) {
            bars.push_back(BarBeside(*edge, projector, axis, length, unit));
        }
    }
    return bars;
}

}  // namespace zelmo
