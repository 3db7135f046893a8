#include "results/section_svg.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <utility>

#include "base/axis_ticks.h"
#include "base/xml_text.h"

namespace zelmo {

namespace {

// All in pixels.
constexpr double plotLeft = 90.0;
constexpr double plotTop = 88.0;
constexpr double widestPlot = 1000.0;
constexpr double highestPlot = 600.0;
constexpr double narrowestPlot = 40.0;
constexpr double belowPlot = 55.0;
constexpr double legendWidth = 240.0;
constexpr double legendGap = 30.0;
constexpr double legendPitch = 22.0;
constexpr double leastTickDistanceAlong = 70.0;
constexpr double leastTickDistanceUp = 18.0;
constexpr double hairline = 1.0;
/// What a point may lie beside the straight line between its neighbours and still be left out.
constexpr double straight = 5e-5;

struct Point {
    double x = 0.0;
    double y = 0.0;
};
using Line = std::vector<Point>;

/// A stretch of neighbouring points of a cut, both ends among them.
struct Stretch {
    std::size_t first = 0;
    std::size_t last = 0;
};

/// From the cut's numbers to pixels.
class Scale {
public:
    Scale(double lengthUm, const SectionView& view) : low_(view.heights.low) {
        const double heightUm = std::max(view.heights.high - view.heights.low, 0.0) / 1000.0;
        const double stretched = heightUm * view.stretch;
        perUm_ = stretched > 0.0 ? std::min(widestPlot / lengthUm, highestPlot / stretched)
                                 : widestPlot / lengthUm;
        perNm_ = perUm_ * view.stretch / 1000.0;
        width_ = lengthUm * perUm_;
        height_ = stretched * perUm_;
    }

    double X(double alongUm) const { return plotLeft + alongUm * perUm_; }
    double Y(double nanometres) const { return plotTop + height_ - (nanometres - low_) * perNm_; }
    double PerUm() const { return perUm_; }
    double PerNm() const { return perNm_; }
    double Width() const { return width_; }
    double Height() const { return height_; }

private:
    double low_ = 0.0;
    double perUm_ = 1.0;
    double perNm_ = 1.0;
    double width_ = 0.0;
    double height_ = 0.0;
};

bool IsThick(const CutHeights& heights, std::size_t i) {
    return !(heights.top[i] - heights.bottom[i] <= noThickness);
}

/// Where a layer is drawn: between two points if it is there at one of them.
std::vector<Stretch> StretchesOf(const CutHeights& heights) {
    std::vector<Stretch> stretches;
    for (std::size_t i = 1; i < heights.top.size(); ++i) {
        if (!IsThick(heights, i - 1) && !IsThick(heights, i)) {
            continue;
        }
        if (!stretches.empty() && stretches.back().last == i - 1) {
            stretches.back().last = i;
        } else {
            stretches.push_back({i - 1, i});
        }
    }
    return stretches;
}

/// Without the points that lie on the straight line between their neighbours.
Line Simplified(const Line& line) {
    Line kept;
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (i > 0 && i + 1 < line.size()) {
            const Point& a = kept.back();
            const Point& b = line[i + 1];
            const double y = a.y + (b.y - a.y) * ((line[i].x - a.x) / (b.x - a.x));
            if (std::abs(y - line[i].y) <= straight) {
                continue;
            }
        }
        kept.push_back(line[i]);
    }
    return kept;
}

template <typename Height>
Line LineAlong(const Stretch& stretch, const std::vector<CutPoint>& points, const Scale& scale,
               const Height& height) {
    Line line;
    for (std::size_t i = stretch.first; i <= stretch.last; ++i) {
        line.push_back({scale.X(points[i].along), scale.Y(height(i))});
    }
    return Simplified(line);
}

/// Up to four decimals, without zeros at their end.
std::string Pixels(double value) {
    std::string text = fmt::format("{:.4f}", value);
    text.erase(text.find_last_not_of('0') + 1);
    if (text.back() == '.') {
        text.pop_back();
    }
    return text == "-0" ? "0" : text;
}

std::string PathData(const Line& line) {
    std::string data;
    for (const Point& point : line) {
        data += fmt::format("{}{} {}", data.empty() ? "M" : "L", Pixels(point.x), Pixels(point.y));
    }
    return data;
}

std::string ColorText(const LayerFacts& facts) {
    std::string text = "#";
    for (const float channel : facts.color) {
        const double level = std::clamp(static_cast<double>(channel), 0.0, 1.0) * 255.0;
        text += fmt::format("{:02x}", static_cast<int>(std::round(level)));
    }
    return text;
}

/// The area of a layer, with a faint outline that sets it off from its neighbours.
std::string AreaOf(const CutLayer& layer, const std::vector<CutPoint>& points, const Scale& scale) {
    const CutHeights& heights = *layer.heights;
    std::string data;
    for (const Stretch& stretch : StretchesOf(heights)) {
        Line outline =
            LineAlong(stretch, points, scale, [&](std::size_t i) { return heights.top[i]; });
        const Line lower =
            LineAlong(stretch, points, scale, [&](std::size_t i) { return heights.bottom[i]; });
        outline.insert(outline.end(), lower.rbegin(), lower.rend());
        data += PathData(outline) + "Z";
    }
    return data.empty()
               ? std::string()
               : fmt::format(
                     "<path d=\"{}\" fill=\"{}\" fill-opacity=\"{:.4g}\" "
                     "stroke=\"#000\" stroke-opacity=\"0.4\" "
                     "stroke-width=\"0.4\" "
                     "vector-effect=\"non-scaling-stroke\"><title>{}</title></path>\n",
                     data, ColorText(layer.facts), layer.facts.alpha, XmlText(layer.facts.label));
}

/// The stretches of a layer in which it is thinner than a hairline.
std::vector<Stretch> ThinStretches(const CutHeights& heights, const Scale& scale) {
    std::vector<Stretch> thin;
    for (const Stretch& stretch : StretchesOf(heights)) {
        for (std::size_t i = stretch.first; i < stretch.last; ++i) {
            const double thickest = std::max(heights.top[i] - heights.bottom[i],
                                             heights.top[i + 1] - heights.bottom[i + 1]);
            if (thickest * scale.PerNm() >= hairline) {
                continue;
            }
            if (!thin.empty() && thin.back().last == i) {
                thin.back().last = i + 1;
            } else {
                thin.push_back({i, i + 1});
            }
        }
    }
    return thin;
}

/// A layer where it would be too thin to be seen: a line that stays as wide however the picture is
/// enlarged.
std::string HairlinesOf(const CutLayer& layer, const std::vector<CutPoint>& points,
                        const Scale& scale) {
    const CutHeights& heights = *layer.heights;
    std::string data;
    for (const Stretch& stretch : ThinStretches(heights, scale)) {
        data += PathData(LineAlong(stretch, points, scale, [&](std::size_t i) {
            return (heights.top[i] + heights.bottom[i]) / 2.0;
        }));
    }
    return data.empty()
               ? std::string()
               : fmt::format(
                     "<path d=\"{}\" fill=\"none\" stroke=\"{}\" stroke-opacity=\"{:.4g}\" "
                     "stroke-width=\"{}\" vector-effect=\"non-scaling-stroke\"/>\n",
                     data, ColorText(layer.facts), layer.facts.alpha, hairline);
}

std::string LineElement(double x1, double y1, double x2, double y2) {
    return fmt::format("<path d=\"M{} {}L{} {}\" stroke=\"#000\" fill=\"none\"/>\n", Pixels(x1),
                       Pixels(y1), Pixels(x2), Pixels(y2));
}

std::string TextElement(double x, double y, std::string_view attributes, std::string_view text) {
    return fmt::format("<text x=\"{}\" y=\"{}\"{}>{}</text>\n", Pixels(x), Pixels(y), attributes,
                       XmlText(text));
}

constexpr std::string_view centred = " text-anchor=\"middle\"";
constexpr std::string_view rightAligned = " text-anchor=\"end\"";

std::string AxisAlong(double lengthUm, const Scale& scale) {
    const double y = plotTop + scale.Height() + 6.0;
    std::string text = LineElement(plotLeft, y, plotLeft + scale.Width(), y);
    for (const AxisTick& tick : AxisTicks(0.0, lengthUm, leastTickDistanceAlong / scale.PerUm())) {
        const double x = scale.X(tick.at);
        text += LineElement(x, y, x, y + 5.0);
        text += TextElement(x, y + 18.0, centred, tick.label);
    }
    return text +
           TextElement(plotLeft + scale.Width() / 2.0, y + 36.0, centred, "along the cut [um]");
}

std::string AxisUp(const HeightRange& heights, const Scale& scale) {
    const double x = plotLeft - 6.0;
    std::string text = LineElement(x, plotTop, x, plotTop + scale.Height());
    for (const AxisTick& tick :
         AxisTicks(heights.low, heights.high, leastTickDistanceUp / scale.PerNm())) {
        const double y = scale.Y(tick.at);
        text += LineElement(x - 5.0, y, x, y);
        text += TextElement(x - 8.0, y + 4.0, rightAligned, tick.label);
    }
    return text + TextElement(x - 8.0, plotTop - 12.0, rightAligned, "height [nm]");
}

bool IsThere(const CutLayer& layer) {
    return !StretchesOf(*layer.heights).empty();
}

std::string Legend(const Section& section, double x) {
    std::string text;
    double y = plotTop;
    for (auto layer = section.layers.rbegin(); layer != section.layers.rend(); ++layer) {
        if (IsThere(*layer)) {
            text += fmt::format(
                "<rect x=\"{}\" y=\"{}\" width=\"28\" height=\"16\" fill=\"{}\" "
                "fill-opacity=\"{:.4g}\" stroke=\"#000\" stroke-width=\"0.4\"/>\n",
                Pixels(x), Pixels(y), ColorText(layer->facts), layer->facts.alpha);
            text += TextElement(x + 36.0, y + 13.0, "", layer->facts.label);
            y += legendPitch;
        }
    }
    return text;
}

std::string Layers(const Section& section, const std::vector<CutPoint>& points,
                   const Scale& scale) {
    std::string text;
    for (const CutLayer& layer : section.layers) {
        text += AreaOf(layer, points, scale);
    }
    for (const CutLayer& layer : section.layers) {
        text += HairlinesOf(layer, points, scale);
    }
    return text;
}

std::string Heading(const Section& section, const SectionView& view) {
    const std::string proportions = view.stretch == 1.0
                                        ? std::string("true proportions")
                                        : fmt::format("heights stretched {} times", view.stretch);
    return TextElement(20.0, 24.0, " font-size=\"17\" font-weight=\"bold\"",
                       fmt::format("{:03d} {}", section.step.number, section.step.name)) +
           TextElement(20.0, 44.0, "", fmt::format("{}, {}", view.cut, proportions));
}

}  // namespace

HeightRange HeightsOf(std::span<const Section> sections) {
    HeightRange range;
    bool isFirst = true;
    for (const Section& section : sections) {
        for (const CutLayer& layer : section.layers) {
            for (const Stretch& stretch : StretchesOf(*layer.heights)) {
                for (std::size_t i = stretch.first; i <= stretch.last; ++i) {
                    const double low = layer.heights->bottom[i];
                    const double high = layer.heights->top[i];
                    range.low = isFirst ? low : std::min(range.low, low);
                    range.high = isFirst ? high : std::max(range.high, high);
                    isFirst = false;
                }
            }
        }
    }
    return range;
}

std::string SectionSvg(const Section& section, const std::vector<CutPoint>& points,
                       const SectionView& view) {
    const double lengthUm = points.back().along;
    const Scale scale(lengthUm, view);
    const double legendLeft = plotLeft + std::max(scale.Width(), narrowestPlot) + legendGap;
    const auto rows = std::count_if(section.layers.begin(), section.layers.end(), IsThere);
    const double height =
        plotTop + std::max(scale.Height() + belowPlot, static_cast<double>(rows) * legendPitch);
    const double width = std::max(legendLeft + legendWidth, 640.0);
    return fmt::format(
               "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"{0}\" height=\"{1}\" "
               "viewBox=\"0 0 {0} {1}\" font-family=\"sans-serif\" font-size=\"12\">\n"
               "<rect width=\"100%\" height=\"100%\" fill=\"#fff\"/>\n",
               Pixels(std::ceil(width)), Pixels(std::ceil(height))) +
           Heading(section, view) + Layers(section, points, scale) + AxisAlong(lengthUm, scale) +
           AxisUp(view.heights, scale) + Legend(section, legendLeft) + "</svg>\n";
}

}  // namespace zelmo
