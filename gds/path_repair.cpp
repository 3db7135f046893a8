#include "gds/path_repair.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <iterator>
#include <utility>

#include "base/conversions.h"
#include "gds/coordinates.h"

namespace zelmo {

namespace {

using Points = std::vector<GdsPoint>;

/// An end of a path: how far it reaches beyond its point, or that it is round.
struct PathEnd {
    double extension = 0.0;
    bool isRound = false;
};

struct PathEnds {
    PathEnd start;
    PathEnd end;
};

PathEnds EndsOf(const DrawnPath& path, double halfWidth) {
    switch (path.pathType) {
        case roundEnds:
            return {{0.0, true}, {0.0, true}};
        case extendedEnds:
            return {{halfWidth, false}, {halfWidth, false}};
        case variableEnds:
            return {{path.variableExtensions.start, false}, {path.variableExtensions.end, false}};
        default:
            return {};
    }
}

Points WithoutRepeats(std::span<const GdsPoint> points) {
    Points line;
    std::unique_copy(points.begin(), points.end(), std::back_inserter(line));
    return line;
}

/// Whether of two segments in parallel the second goes the way of the first, and not back.
bool RunsOn(GdsPoint from, GdsPoint over, GdsPoint to) {
    const double x = static_cast<double>(over.x - from.x) * static_cast<double>(to.x - over.x);
    const double y = static_cast<double>(over.y - from.y) * static_cast<double>(to.y - over.y);
    return x + y > 0.0;
}

/// The parts of a line between the points where it folds back, without the points that it runs
/// straight through.
std::vector<Points> PartsOf(const Points& line) {
    std::vector<Points> parts{{line.front()}};
    for (const GdsPoint point : std::span(line).subspan(1)) {
        Points& part = parts.back();
        while (part.size() >= 2 && AreParallel(part.end()[-2], part.back(), point) &&
               RunsOn(part.end()[-2], part.back(), point)) {
            part.pop_back();
        }
        if (part.size() >= 2 && AreParallel(part.end()[-2], part.back(), point)) {
            parts.push_back({part.back(), point});
        } else {
            part.push_back(point);
        }
    }
    return parts;
}

/// Adds what lies between the left and the right side of a round end whose outward direction is
/// (x, y), of length 1: a half circle in 16 chords.
void AddHalfCircle(Points& outline, GdsPoint centre, double x, double y, double radius) {
    // Written down, as the functions of platforms differ in the last bit.
    constexpr int quarter = 8;
    constexpr std::array<double, quarter + 1> cosines = {1.0,
                                                         0.98078528040323043,
                                                         0.92387953251128674,
                                                         0.83146961230254524,
                                                         0.70710678118654752,
                                                         0.55557023301960218,
                                                         0.38268343236508977,
                                                         0.19509032201612827,
                                                         0.0};
    for (int i = 1; i < 2 * quarter; ++i) {
        const double outward = radius * cosines.at(std::abs(quarter - i));
        const double sideward =
            i <= quarter ? radius * cosines.at(i) : -radius * cosines.at(2 * quarter - i);
        outline.push_back({centre.x + TruncateToI64(outward * x - sideward * y),
                           centre.y + TruncateToI64(outward * y + sideward * x)});
    }
}

/// The same for an end of a line, `inner` being the point next to it.
void AddRoundEnd(Points& outline, GdsPoint end, GdsPoint inner, double radius) {
    const auto x = static_cast<double>(end.x - inner.x);
    const auto y = static_cast<double>(end.y - inner.y);
    const double length = std::sqrt(x * x + y * y);
    AddHalfCircle(outline, end, x / length, y / length, radius);
}

/// The outline of a line that ExpandPath takes, but for its ends.
Points OutlineOf(const Points& line, std::uint32_t width, const PathEnds& ends) {
    const std::size_t n = line.size();
    const double radius = static_cast<double>(width) * 0.5;
    Points sides(2 * n + 1);
    if (!ExpandCentreLine(sides, line, width, {ends.start.extension, ends.end.extension})) {
        return {};
    }
    const auto right = sides.begin() + static_cast<std::ptrdiff_t>(n);
    Points outline(sides.begin(), right);
    if (ends.end.isRound) {
        AddRoundEnd(outline, line[n - 1], line[n - 2], radius);
    }
    outline.insert(outline.end(), right, sides.end() - 1);
    if (ends.start.isRound) {
        AddRoundEnd(outline, line[0], line[1], radius);
    }
    outline.push_back(outline.front());
    return outline;
}

/// What the ends of a path make at its only point.
Points DotOf(GdsPoint point, std::uint32_t width, const PathEnds& ends) {
    const double radius = static_cast<double>(width) * 0.5;
    if (ends.start.isRound) {
        Points circle{{point.x, point.y + TruncateToI64(radius)}};
        AddHalfCircle(circle, point, 1.0, 0.0, radius);
        circle.push_back({point.x, point.y - TruncateToI64(radius)});
        AddHalfCircle(circle, point, -1.0, 0.0, radius);
        circle.push_back(circle.front());
        return width == 0 ? Points() : circle;
    }
    const GdsPoint start{point.x - TruncateToI32(ends.start.extension), point.y};
    const GdsPoint end{point.x + TruncateToI32(ends.end.extension), point.y};
    return start.x < end.x ? OutlineOf({start, end}, width, {}) : Points();
}

bool HasRefusedEnds(const Points& line) {
    const std::size_t n = line.size();
    return n >= 2 &&
           (!AcceptsExtendedEnd(line[0], line[1]) || !AcceptsExtendedEnd(line[n - 1], line[n - 2]));
}

}  // namespace

RepairedPath RepairPath(const DrawnPath& path) {
    const auto width = static_cast<std::uint32_t>(std::abs(std::int64_t{path.width}));
    const double halfWidth = static_cast<double>(width) * 0.5;
    const PathEnds ends = EndsOf(path, halfWidth);
    const Points line = WithoutRepeats(path.points);
    const std::vector<Points> parts = PartsOf(line);
    RepairedPath repaired;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        const PathEnd fold{halfWidth, false};
        const PathEnds endsOfPart{i == 0 ? ends.start : fold,
                                  i + 1 == parts.size() ? ends.end : fold};
        Points outline =
            line.size() == 1 ? DotOf(line[0], width, ends) : OutlineOf(parts[i], width, endsOfPart);
        if (!outline.empty()) {
            repaired.outlines.push_back(std::move(outline));
        }
    }
    std::size_t pointsOfParts = 1;  // where one ends and the next begins counts once
    for (const Points& part : parts) {
        pointsOfParts += part.size() - 1;
    }
    repaired.faults = {.repeatedPoints = line.size() < path.points.size(),
                       .collinearPoints = pointsOfParts < line.size() || parts.size() > 1,
                       .refusedEnds = path.endsTested && HasRefusedEnds(line),
                       .noLength = line.size() == 1};
    return repaired;
}

}  // namespace zelmo
