#include <algorithm>
#include <cmath>
#include <map>
#include <utility>

#include "gds/coordinates.h"
#include "gds/polygon_extraction.h"
#include "layout_tool/cell_facts.h"
#include "process_run/mask_polygons.h"

namespace zelmo {

namespace {

struct Point {
    double x = 0.0;
    double y = 0.0;
};
using Polygon = std::vector<Point>;

/// The part of a polygon on one side of a line: `depth` tells how far in a point lies.
template <typename Depth>
Polygon Cut(const Polygon& polygon, Depth depth) {
    Polygon kept;
    for (std::size_t i = 0; i < polygon.size(); ++i) {
        const Point& a = polygon[i];
        const Point& b = polygon[(i + 1) % polygon.size()];
        const double depthA = depth(a);
        const double depthB = depth(b);
        if (depthA >= 0.0) {
            kept.push_back(a);
        }
        if ((depthA >= 0.0) != (depthB >= 0.0)) {
            const double share = depthA / (depthA - depthB);
            kept.push_back({a.x + share * (b.x - a.x), a.y + share * (b.y - a.y)});
        }
    }
    return kept;
}

double AreaOf(const Polygon& polygon) {
    double sum = 0.0;
    for (std::size_t i = 1; i + 1 < polygon.size(); ++i) {
        sum += (polygon[i].x - polygon[0].x) * (polygon[i + 1].y - polygon[0].y) -
               (polygon[i + 1].x - polygon[0].x) * (polygon[i].y - polygon[0].y);
    }
    return std::abs(sum) / 2.0;
}

/// A window in units of the layout, and the whole units around it.
struct UnitWindow {
    double x0 = 0.0;
    double y0 = 0.0;
    double x1 = 0.0;
    double y1 = 0.0;
    ExtractionWindow around;
};

UnitWindow ToUnits(const GivenWindow& window, double micronsPerUnit) {
    UnitWindow units;
    units.x0 = static_cast<double>(window.x) / micronsPerUnit;
    units.y0 = static_cast<double>(window.y) / micronsPerUnit;
    units.x1 = units.x0 + static_cast<double>(window.width) / micronsPerUnit;
    units.y1 = units.y0 + static_cast<double>(window.height) / micronsPerUnit;
    units.around = {TruncateToI64(std::floor(units.x0)), TruncateToI64(std::floor(units.y0)),
                    TruncateToI64(std::ceil(units.x1)), TruncateToI64(std::ceil(units.y1)), 0};
    return units;
}

void Add(WindowCut& cut, double area) {
    ++cut.shapes;
    cut.area += area;
}

}  // namespace

double AreaWithin(const std::vector<GdsPoint>& points, double x0, double y0, double x1, double y1) {
    Polygon polygon;
    bool isInside = true;
    for (const GdsPoint point : points) {
        const Point here{static_cast<double>(point.x), static_cast<double>(point.y)};
        isInside = isInside && here.x >= x0 && here.x <= x1 && here.y >= y0 && here.y <= y1;
        polygon.push_back(here);
    }
    if (!isInside) {
        polygon = Cut(polygon, [&](const Point& point) { return point.x - x0; });
        polygon = Cut(polygon, [&](const Point& point) { return x1 - point.x; });
        polygon = Cut(polygon, [&](const Point& point) { return point.y - y0; });
        polygon = Cut(polygon, [&](const Point& point) { return y1 - point.y; });
    }
    return AreaOf(polygon);
}

void CutWithWindow(const LayoutReading& reading, CellFacts& facts) {
    const double micronsPerUnit = reading.database.micronsPerUnit;
    const UnitWindow window = ToUnits(*facts.window, micronsPerUnit);
    const std::string cellName(NameText(reading.database.cells[facts.cell].name));
    const PolygonExtraction found = ExtractPolygons(reading.database, cellName, window.around);
    if (found.refusal) {
        facts.cutFailure = ExtractionFailureLine(*found.refusal, cellName);
        return;
    }
    std::map<std::pair<std::uint16_t, std::uint16_t>, std::size_t> rows;
    for (std::size_t row = 0; row < facts.layers.layers.size(); ++row) {
        rows[{facts.layers.layers[row].layer, facts.layers.layers[row].datatype}] = row;
    }
    facts.cuts.assign(facts.layers.layers.size(), {});
    const auto left = static_cast<double>(window.around.x0);
    const auto lower = static_cast<double>(window.around.y0);
    for (const RawPolygon& polygon : found.polygons) {
        const double area = AreaWithin(polygon.points, window.x0 - left, window.y0 - lower,
                                       window.x1 - left, window.y1 - lower);
        const auto row = rows.find({polygon.layer, polygon.datatype});
        if (area > 0.0 && row != rows.end()) {
            Add(facts.cuts[row->second], area * micronsPerUnit * micronsPerUnit);
        }
    }
    for (MaskFacts& mask : facts.masks) {
        for (const std::size_t row : mask.rows) {
            mask.cut.shapes += facts.cuts[row].shapes;
            mask.cut.area += facts.cuts[row].area;
        }
    }
}

}  // namespace zelmo
