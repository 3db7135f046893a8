#include "tests/plain/gds_plain.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <stdexcept>

namespace zelmo {

namespace {

std::int64_t Truncate64(double value) {
    if (std::isnan(value)) {
        return 0;
    }
    const double whole = std::trunc(value);
    if (whole <= -9223372036854775808.0) {
        return std::numeric_limits<std::int64_t>::min();
    }
    if (whole >= 9223372036854775808.0) {
        return std::numeric_limits<std::int64_t>::max();
    }
    return static_cast<std::int64_t>(whole);
}

std::int64_t Truncate32(double value) {
    const double whole = std::trunc(value);
    if (whole >= -2147483648.0 && whole <= 2147483647.0) {
        return static_cast<std::int64_t>(whole);
    }
    return -2147483648LL;
}

std::int64_t Add(std::int64_t a, std::int64_t b) {
    std::int64_t sum = 0;
    if (__builtin_add_overflow(a, b, &sum)) {
        return b > 0 ? std::numeric_limits<std::int64_t>::max()
                     : std::numeric_limits<std::int64_t>::min();
    }
    return sum;
}

std::int64_t Subtract(std::int64_t a, std::int64_t b) {
    std::int64_t difference = 0;
    if (__builtin_sub_overflow(a, b, &difference)) {
        return b < 0 ? std::numeric_limits<std::int64_t>::max()
                     : std::numeric_limits<std::int64_t>::min();
    }
    return difference;
}

GdsTransform Child(GdsPoint origin, double mag, double angle, std::uint16_t strans,
                   const GdsTransform& parent) {
    const double s = parent.flip != 0 ? -1.0 : 1.0;
    const double x = static_cast<double>(origin.x);
    const double y = static_cast<double>(origin.y) * s;
    GdsTransform child;
    child.dx =
        Add(Truncate64((x * std::cos(parent.angle) - y * std::sin(parent.angle)) * parent.mag),
            parent.dx);
    child.dy =
        Add(Truncate64((y * std::cos(parent.angle) + x * std::sin(parent.angle)) * parent.mag),
            parent.dy);
    child.mag = parent.mag * mag;
    child.angle = parent.angle + angle;
    child.flip = static_cast<std::uint16_t>((strans & 0x8000) ^ parent.flip);
    return child;
}

void Merge(GdsRect& target, const GdsRect& rect) {
    target.xmin = std::min(target.xmin, std::min(rect.xmin, rect.xmax));
    target.ymin = std::min(target.ymin, std::min(rect.ymin, rect.ymax));
    target.xmax = std::max(target.xmax, std::max(rect.xmin, rect.xmax));
    target.ymax = std::max(target.ymax, std::max(rect.ymin, rect.ymax));
}

/// Calls `visit` with the position of each instance until it returns a reason to end.
template <typename Truncate, typename Visit>
std::optional<ExtractionRefusal> ForEachInstance(const GdsAref& aref, Truncate truncate,
                                                 Visit visit) {
    if (aref.points.size() < 3) {
        throw std::out_of_range("invalid vector subscript");
    }
    const GdsPoint p0 = aref.points[0];
    const GdsPoint p1 = aref.points[1];
    const GdsPoint p2 = aref.points[2];
    const double columnX = static_cast<double>(Subtract(p1.x, p0.x)) / aref.columns;
    const double columnY = static_cast<double>(Subtract(p1.y, p0.y)) / aref.columns;
    const double rowX = static_cast<double>(Subtract(p2.x, p0.x)) / aref.rows;
    const double rowY = static_cast<double>(Subtract(p2.y, p0.y)) / aref.rows;
    for (std::int32_t i = 0; i < aref.columns; ++i) {
        for (std::int32_t j = 0; j < aref.rows; ++j) {
            const double x = rowX * j + (columnX * i + static_cast<double>(p0.x));
            const double y = rowY * j + (columnY * i + static_cast<double>(p0.y));
            if (const auto result = visit(GdsPoint{truncate(x), truncate(y)})) {
                return result;
            }
        }
    }
    return std::nullopt;
}

struct Line {
    double a, b, c;
};

GdsPoint Foot(GdsPoint p, Line l) {
    const double px = static_cast<double>(p.x);
    const double py = static_cast<double>(p.y);
    const double e = l.a * py - l.b * px;
    const double det = -l.a * l.a - l.b * l.b;
    return {Truncate64((e * l.b + l.c * l.a) / det), Truncate64((l.c * l.b - e * l.a) / det)};
}

GdsPoint Intersection(Line l1, Line l2) {
    const double det = l2.b * l1.a - l2.a * l1.b;
    return {Truncate64((l2.c * l1.b - l1.c * l2.b) / det),
            Truncate64((l2.a * l1.c - l2.c * l1.a) / det)};
}

/// The end of a type 2 path, moved outward. False if it is refused.
bool Extend(GdsPoint& end, GdsPoint inner, double h) {
    if (end.x == inner.x && end.x == inner.y) {
        return false;
    }
    const double ex = static_cast<double>(end.x - inner.x);
    const double ey = static_cast<double>(end.y - inner.y);
    const double length = std::sqrt(ex * ex + ey * ey);
    if (length != 0.0) {
        end.x += Truncate32(h / length * ex);
        end.y += Truncate32(h / length * ey);
    }
    return true;
}

bool Overlaps(const ExtractionScope& scope, const GdsRect& r) {
    return scope.window.x0 < r.xmax && scope.window.x1 > r.xmin && scope.window.y1 > r.ymin &&
           scope.window.y0 < r.ymax;
}

std::optional<ExtractionRefusal> CollectIfMet(ExtractionScope& scope, const GdsCell* cell,
                                              const GdsTransform& child) {
    return Overlaps(scope, TransformRectPlain(cell->bounds, child, false))
               ? CollectCellPolygonsPlain(scope, {cell, child})
               : std::nullopt;
}

}  // namespace

GdsPoint TransformPointPlain(GdsPoint point, const GdsTransform& t, bool inverse) {
    const double s = t.flip != 0 ? -1.0 : 1.0;
    if (!inverse) {
        const double x = static_cast<double>(point.x);
        const double y = static_cast<double>(point.y) * s;
        return {Add(Truncate64((x * std::cos(t.angle) - y * std::sin(t.angle)) * t.mag), t.dx),
                Add(Truncate64((y * std::cos(t.angle) + x * std::sin(t.angle)) * t.mag), t.dy)};
    }
    const double x = static_cast<double>(Subtract(point.x, t.dx));
    const double y = static_cast<double>(Subtract(point.y, t.dy)) * s;
    const double a = -t.angle;
    const double m = 1.0 / t.mag;
    return {Truncate64((x * std::cos(a) - y * std::sin(a)) * m),
            Truncate64((y * std::cos(a) + x * std::sin(a)) * m)};
}

GdsRect TransformRectPlain(const GdsRect& rect, const GdsTransform& t, bool inverse) {
    GdsRect box{2147483647, 2147483647, -2147483648LL, -2147483648LL};
    for (const GdsPoint corner : {GdsPoint{rect.xmin, rect.ymin}, GdsPoint{rect.xmin, rect.ymax},
                                  GdsPoint{rect.xmax, rect.ymax}, GdsPoint{rect.xmax, rect.ymin}}) {
        const GdsPoint p = TransformPointPlain(corner, t, inverse);
        box.xmin = std::min(box.xmin, p.x);
        box.ymin = std::min(box.ymin, p.y);
        box.xmax = std::max(box.xmax, p.x);
        box.ymax = std::max(box.ymax, p.y);
    }
    return box;
}

std::vector<GdsPoint> ExpandPathPlain(const std::vector<GdsPoint>& points, std::uint32_t width,
                                      std::uint16_t pathType) {
    const std::size_t n = points.size();
    const double h = static_cast<double>(width) * 0.5;
    if (n < 2) {
        return {};
    }
    std::vector<Line> left;
    std::vector<Line> right;
    for (std::size_t i = 0; i + 1 < n; ++i) {
        const double dx = static_cast<double>(points[i + 1].x - points[i].x);
        const double dy = static_cast<double>(points[i + 1].y - points[i].y);
        if (dx == 0.0 && dy == 0.0) {
            return {};
        }
        const double c0 =
            static_cast<double>(points[i].y) * dx - static_cast<double>(points[i].x) * dy;
        const double d = std::sqrt(dx * dx + dy * dy) * h;
        left.push_back({dy, -dx, c0 + d});
        right.push_back({dy, -dx, c0 - d});
    }
    std::vector<GdsPoint> out(2 * n + 1);
    GdsPoint start = points[0];
    if (pathType == 2 && !Extend(start, points[1], h)) {
        return {};
    }
    out[0] = Foot(start, left[0]);
    out[2 * n - 1] = Foot(start, right[0]);
    out[2 * n] = out[0];
    for (std::size_t i = 1; i + 1 < n; ++i) {
        if (left[i].b * left[i - 1].a - left[i].a * left[i - 1].b == 0.0 ||
            right[i].b * right[i - 1].a - right[i].a * right[i - 1].b == 0.0) {
            return {};
        }
        out[i] = Intersection(left[i - 1], left[i]);
        out[2 * n - 1 - i] = Intersection(right[i - 1], right[i]);
    }
    GdsPoint end = points[n - 1];
    if (pathType == 2 && !Extend(end, points[n - 2], h)) {
        return {};
    }
    out[n - 1] = Foot(end, left[n - 2]);
    out[n] = Foot(end, right[n - 2]);
    return out;
}

GdsRect ComputeCellBoundsPlain(PlainCellSizes& sizes, const GdsCell& cell,
                               const GdsTransform& transform) {
    if (const auto stored = sizes.find(&cell); stored != sizes.end()) {
        return TransformRectPlain(stored->second, transform, false);
    }
    GdsRect r{0, 0, 0, 0};
    for (const GdsBoundary& boundary : cell.boundaries) {
        Merge(r, boundary.bounds);
    }
    r = TransformRectPlain(r, transform, false);
    for (const GdsSref& sref : cell.srefs) {
        const GdsTransform child = Child(sref.origin, sref.mag, sref.angle, sref.strans, transform);
        Merge(r, ComputeCellBoundsPlain(sizes, *sref.cell, child));
    }
    for (const GdsAref& aref : cell.arefs) {
        ForEachInstance(aref, Truncate64, [&](GdsPoint position) {
            const GdsTransform child =
                Child(position, aref.mag, aref.angle, aref.strans, transform);
            Merge(r, ComputeCellBoundsPlain(sizes, *aref.cell, child));
            return std::optional<ExtractionRefusal>();
        });
    }
    sizes[&cell] = TransformRectPlain(r, transform, true);
    return r;
}

std::optional<ExtractionRefusal> CollectCellPolygonsPlain(ExtractionScope& scope,
                                                          const PlacedCell& placed) {
    const GdsTransform& t = placed.transform;
    for (const GdsBoundary& boundary : placed.cell->boundaries) {
        const GdsRect r = TransformRectPlain(boundary.bounds, t, false);
        if (!Overlaps(scope, r)) {
            continue;
        }
        if (std::min(Subtract(r.ymax, r.ymin), Subtract(r.xmax, r.xmin)) < scope.window.minSize) {
            ++scope.skipped;
            continue;
        }
        RawPolygon polygon;
        polygon.layer = boundary.layer;
        polygon.datatype = boundary.datatype;
        for (const GdsPoint point : boundary.points) {
            const GdsPoint p = TransformPointPlain(point, t, false);
            polygon.points.push_back(
                {Subtract(p.x, scope.window.x0), Subtract(p.y, scope.window.y0)});
        }
        scope.output.push_back(polygon);
        if (scope.output.size() == scope.limits.polygons) {
            return ExtractionRefusal::TooManyPolygons;
        }
    }
    for (const GdsSref& sref : placed.cell->srefs) {
        const GdsTransform child = Child(sref.origin, sref.mag, sref.angle, sref.strans, t);
        if (const auto result = CollectIfMet(scope, sref.cell, child)) {
            return result;
        }
    }
    for (const GdsAref& aref : placed.cell->arefs) {
        const auto result = ForEachInstance(aref, Truncate32, [&](GdsPoint position) {
            return CollectIfMet(scope, aref.cell,
                                Child(position, aref.mag, aref.angle, aref.strans, t));
        });
        if (result) {
            return result;
        }
    }
    return std::nullopt;
}

}  // namespace zelmo
