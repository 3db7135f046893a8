#include "layout_tool/picture_shapes.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "gds/coordinates.h"
#include "layout_tool/lengths.h"
#include "process_run/mask_polygons.h"

namespace zelmo {

namespace {

/// For what has no colour of its own.
constexpr std::array<std::array<float, 3>, 10> palette = {{{0.12f, 0.47f, 0.71f},
                                                           {0.84f, 0.15f, 0.16f},
                                                           {0.17f, 0.63f, 0.17f},
                                                           {1.00f, 0.50f, 0.05f},
                                                           {0.58f, 0.40f, 0.74f},
                                                           {0.55f, 0.34f, 0.29f},
                                                           {0.89f, 0.47f, 0.76f},
                                                           {0.09f, 0.75f, 0.81f},
                                                           {0.74f, 0.74f, 0.13f},
                                                           {0.30f, 0.30f, 0.30f}}};

/// What is drawn of a mask: its layers, or those of them that are chosen.
std::vector<MaskLayer> LayersOf(const MaskFacts& mask, const CellFacts& facts) {
    if (facts.only.empty()) {
        return mask.layers;
    }
    std::vector<MaskLayer> layers;
    for (const std::size_t row : mask.rows) {
        const LayerContents& layer = facts.layers.layers[row];
        layers.push_back({layer.layer, layer.datatype});
    }
    return layers;
}

std::vector<PictureGroup> MakeGroups(const CellFacts& facts, const ReportSubject& subject) {
    std::vector<PictureGroup> groups;
    if (!subject.process.empty()) {
        for (const MaskFacts& mask : facts.masks) {
            const auto& color = mask.hasColor ? mask.color : palette[mask.number % palette.size()];
            const std::string photo = mask.uses.empty() ? "" : mask.uses[0].photo;
            groups.push_back(
                {fmt::format("{} {}", mask.text, photo), color, LayersOf(mask, facts), {}});
        }
        return groups;
    }
    for (std::size_t row = 0; row < facts.layers.layers.size(); ++row) {
        const LayerContents& layer = facts.layers.layers[row];
        if (layer.shapes != FlatCount()) {
            groups.push_back({fmt::format("{}/{}", layer.layer, layer.datatype),
                              palette[facts.numbers[row] % palette.size()],
                              {{layer.layer, layer.datatype}},
                              {}});
        }
    }
    return groups;
}

/// The greater side of a shape's box.
std::int64_t SizeOf(const RawPolygon& polygon) {
    const auto [left, right] =
        std::minmax_element(polygon.points.begin(), polygon.points.end(),
                            [](const GdsPoint& a, const GdsPoint& b) { return a.x < b.x; });
    const auto [lower, upper] =
        std::minmax_element(polygon.points.begin(), polygon.points.end(),
                            [](const GdsPoint& a, const GdsPoint& b) { return a.y < b.y; });
    return std::max(SaturatingSubtract(right->x, left->x), SaturatingSubtract(upper->y, lower->y));
}

/// HeldPoint where differences of such numbers fit: far outside of every picture.
GdsPoint HeldPoint(GdsPoint point) {
    constexpr std::int64_t limit = std::int64_t{1} << 53;
    return {std::clamp(point.x, -limit, limit), std::clamp(point.y, -limit, limit)};
}

/// Takes the smallest shapes out until the others are few enough. Their order stays.
std::string KeepLargest(std::vector<RawPolygon>& polygons, const PictureLimits& limits,
                        const Lengths& lengths) {
    std::vector<std::pair<std::int64_t, std::size_t>> sizes;
    for (std::size_t i = 0; i < polygons.size(); ++i) {
        sizes.emplace_back(-SizeOf(polygons[i]), i);
    }
    std::sort(sizes.begin(), sizes.end());
    std::size_t points = 0;
    std::size_t kept = 0;
    while (kept < sizes.size() && kept < limits.shapes &&
           points + polygons[sizes[kept].second].points.size() <= limits.points) {
        points += polygons[sizes[kept].second].points.size();
        ++kept;
    }
    if (kept == sizes.size()) {
        return {};
    }
    const std::int64_t largest = -sizes[kept].first;
    for (std::size_t i = kept; i < sizes.size(); ++i) {
        polygons[sizes[i].second].points.clear();
    }
    return fmt::format(
        "{} of {} shapes are drawn, the largest; those left out are up to {} um "
        "long (--window shows a part)",
        kept, sizes.size(), lengths.Text(largest));
}

}  // namespace

PictureShapes CollectShapes(const LayoutReading& reading, const CellFacts& facts,
                            const ReportSubject& subject, const PictureView& view,
                            const PictureLimits& limits) {
    const std::string cell(NameText(reading.database.cells[facts.cell].name));
    PolygonExtraction found =
        ExtractPolygons(reading.database, cell, {view.x0, view.y0, view.x1, view.y1, 0});
    PictureShapes shapes;
    shapes.groups = MakeGroups(facts, subject);
    if (found.refusal) {
        shapes.failure = ExtractionFailureLine(*found.refusal, cell) + "; --window shows a part";
        return shapes;
    }
    std::erase_if(found.polygons, [&](const RawPolygon& polygon) {
        return polygon.points.empty() ||
               std::none_of(shapes.groups.begin(), shapes.groups.end(),
                            [&](const PictureGroup& group) {
                                return IsPartOf(group.layers, polygon.layer, polygon.datatype);
                            });
    });
    shapes.leftOut = KeepLargest(found.polygons, limits, Lengths(reading.database));
    for (RawPolygon& polygon : found.polygons) {
        std::transform(polygon.points.begin(), polygon.points.end(), polygon.points.begin(),
                       HeldPoint);
        for (PictureGroup& group : shapes.groups) {
            if (!polygon.points.empty() &&
                IsPartOf(group.layers, polygon.layer, polygon.datatype)) {
                group.shapes.push_back(polygon.points);
            }
        }
    }
    return shapes;
}

}  // namespace zelmo
