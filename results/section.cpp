#include "results/section.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

#include "model/process_model.h"
#include "results/drawn_point.h"
#include "results/readable_text.h"

namespace zelmo {

namespace {

/// Points closer than this, in cells, are one.
constexpr double samePoint = 1e-9;

/// Rounded in the same way by every library.
double Length(double dx, double dy) {
    return std::sqrt(dx * dx + dy * dy);
}

/// The shares of the way from `from` to `to` at which whole numbers are passed, the ends left out.
void AddCrossings(double from, double to, std::vector<double>& shares) {
    const double first = std::ceil(std::min(from, to));
    const double last = std::floor(std::max(from, to));
    for (double whole = first; from != to && whole <= last; whole += 1.0) {
        const double share = (whole - from) / (to - from);
        if (share > 0.0 && share < 1.0) {
            shares.push_back(share);
        }
    }
}

/// A whole number for what is one but for rounding.
double Snapped(double coordinate) {
    const double whole = std::round(coordinate);
    return std::abs(coordinate - whole) < samePoint ? whole : coordinate;
}

GridPosition Between(const GridPosition& from, const GridPosition& to, double share) {
    return {Snapped(from.col + share * (to.col - from.col)),
            Snapped(from.row + share * (to.row - from.row))};
}

/// The shares of the way at which a cut has points, its ends among them.
std::vector<double> SharesOfCut(const GridPosition& from, const GridPosition& to) {
    std::vector<double> shares{0.0, 1.0};
    AddCrossings(from.col, to.col, shares);
    AddCrossings(from.row, to.row, shares);
    AddCrossings(from.col + from.row, to.col + to.row, shares);
    std::sort(shares.begin(), shares.end());
    const double cells = Length(to.col - from.col, to.row - from.row);
    const auto isSame = [&](double a, double b) { return (b - a) * cells < samePoint; };
    shares.erase(std::unique(shares.begin(), shares.end(), isSame), shares.end());
    if (shares.size() > 1) {
        shares.back() = 1.0;  // of a point and the end, the end stays
    }
    return shares;
}

std::shared_ptr<const CutHeights> HeightsAlong(const Layer& layer, const ProcessModel& model,
                                               const std::vector<CutPoint>& points) {
    auto heights = std::make_shared<CutHeights>();
    heights->bottom.reserve(points.size());
    heights->top.reserve(points.size());
    for (const CutPoint& cutPoint : points) {
        const DrawnPoint point(model.grid, cutPoint.position);
        const auto height = [&](const auto& surface) {
            return NanometresAboveSubstrate(point.HeightOf(surface), model.stack);
        };
        heights->bottom.push_back(height(layer.bottom));
        heights->top.push_back(height(layer.top));
    }
    return heights;
}

}  // namespace

std::vector<CutPoint> PointsOfCut(const Grid& grid, const CutLine& cut) {
    const GridPosition from = PositionOnGrid(grid, cut.from);
    const GridPosition to = PositionOnGrid(grid, cut.to);
    const double length = Length(cut.to.x - cut.from.x, cut.to.y - cut.from.y);
    std::vector<CutPoint> points;
    for (const double share : SharesOfCut(from, to)) {
        const GridPosition position = Between(from, to, share);
        points.push_back({share * length, position, PlaceOnLayout(grid, position)});
    }
    return points;
}

Section SectionTaker::Take(const ProcessModel& model, StepName step) {
    const Stack& stack = model.stack;
    Section section{std::move(step), {}};
    kept_.resize(stack.layers.size());
    for (std::size_t slot = 0; slot < stack.layers.size(); ++slot) {
        const Layer* const layer = stack.layers[slot].get();
        Kept& kept = kept_[slot];
        if (layer == nullptr) {
            kept = {};
            continue;
        }
        if (kept.heights == nullptr || kept.version == nullptr || kept.version != layer->version) {
            kept = {layer->version, HeightsAlong(*layer, model, points_)};
        }
        section.layers.push_back({FactsOf(stack, slot), kept.heights});
    }
    return section;
}

std::string SectionCsv(const Section& section, const std::vector<CutPoint>& points,
                       const ProcessSettings& settings) {
    const std::string_view unit = LayoutUnitName(settings);
    std::string text = fmt::format("along_um,x_{0},y_{0}", unit);
    for (const CutLayer& layer : section.layers) {
        for (const char* const side : {"bottom", "top"}) {
            const std::string name =
                fmt::format("{} {} {}_nm", layer.facts.number, layer.facts.label, side);
            text += fmt::format(",{}", CsvField(name));
        }
    }
    text += '\n';
    for (std::size_t i = 0; i < points.size(); ++i) {
        const Place place = InLayoutUnit(settings, points[i].place);
        fmt::format_to(std::back_inserter(text), "{:.6f},{:.6f},{:.6f}", points[i].along, place.x,
                       place.y);
        for (const CutLayer& layer : section.layers) {
            fmt::format_to(std::back_inserter(text), ",{:.3f},{:.3f}",
                           RoundedNanometres(layer.heights->bottom[i]),
                           RoundedNanometres(layer.heights->top[i]));
        }
        text += '\n';
    }
    return text;
}

}  // namespace zelmo
