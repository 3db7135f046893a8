#include "layout_tool/layout_picture.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <iterator>

#include "base/axis_ticks.h"
#include "gds/coordinates.h"
#include "gds/placed_boxes.h"
#include "layout_tool/lengths.h"
#include "layout_tool/picture_shapes.h"
#include "layout_tool/svg_text.h"

namespace zelmo {

namespace {

// Lengths of the page, in its own pixels.
constexpr double left = 90.0;
constexpr double top = 50.0;
constexpr double below = 70.0;
constexpr double legendWidth = 280.0;
constexpr double legendLine = 22.0;
constexpr double largestWidth = 900.0;
constexpr double largestHeight = 700.0;
constexpr std::size_t longestTitle = 30;

/// Where the layout lies on the page.
struct Page {
    PictureView view;
    double micronsPerUnit = 0.0;
    double scale = 1.0;  ///< pixels of a unit
    double width = 0.0;  ///< of the drawing
    double height = 0.0;
    double pageHeight = 0.0;

    double X(double microns) const {
        return left + (microns / micronsPerUnit - static_cast<double>(view.x0)) * scale;
    }
    double Y(double microns) const {
        return top + height - (microns / micronsPerUnit - static_cast<double>(view.y0)) * scale;
    }
};

template <typename... Values>
void Add(std::string& svg, fmt::format_string<Values...> format, Values&&... values) {
    fmt::format_to(std::back_inserter(svg), format, std::forward<Values>(values)...);
}

/// Held where sums and differences of a few such numbers are exact.
std::int64_t ToUnits(double units) {
    constexpr double limit = 0x1p50;
    return TruncateToI64(std::round(std::clamp(units, -limit, limit)));
}

std::int64_t Held(std::int64_t units) {
    constexpr std::int64_t limit = std::int64_t{1} << 50;
    return std::clamp(units, -limit, limit);
}

PictureView ViewOf(const LayoutReading& reading, const CellFacts& facts) {
    const CellContents& cell = reading.cells[facts.cell];
    GdsRect box = cell.hasBox && !IsNothing(cell.box) ? cell.box : GdsRect{0, 0, 1, 1};
    if (facts.window) {
        const GivenWindow& window = *facts.window;
        const double unit = reading.database.micronsPerUnit;
        const auto x = static_cast<double>(window.x);
        const auto y = static_cast<double>(window.y);
        const auto width = static_cast<double>(window.width);
        const auto height = static_cast<double>(window.height);
        const double around = 0.1 * std::max(width, height);
        box = {ToUnits((x - around) / unit), ToUnits((y - around) / unit),
               ToUnits((x + width + around) / unit), ToUnits((y + height + around) / unit)};
    }
    box = {Held(box.xmin), Held(box.ymin), Held(box.xmax), Held(box.ymax)};
    // A little room, and never none
    const std::int64_t room =
        facts.window ? 0 : std::max(box.xmax - box.xmin, box.ymax - box.ymin) / 50 + 1;
    return {box.xmin - room, box.ymin - room, std::max(box.xmax, box.xmin + 1) + room,
            std::max(box.ymax, box.ymin + 1) + room};
}

Page LayOutPage(const PictureView& view, double micronsPerUnit, std::size_t legendLines) {
    Page page{view, micronsPerUnit};
    const auto across = static_cast<double>(view.x1 - view.x0);
    const auto along = static_cast<double>(view.y1 - view.y0);
    page.scale = std::min(largestWidth / across, largestHeight / along);
    page.width = across * page.scale;
    page.height = along * page.scale;
    page.pageHeight = std::max(page.height + top + below,
                               top + legendLine * static_cast<double>(legendLines + 2));
    return page;
}

void AddShapes(std::string& svg, const Page& page, const std::vector<PictureGroup>& groups) {
    Add(svg,
        "<clipPath id=\"frame\"><rect x=\"{0:.2f}\" y=\"{1:.2f}\" width=\"{2:.2f}\" "
        "height=\"{3:.2f}\"/></clipPath>\n<g clip-path=\"url(#frame)\">\n",
        left, top, page.width, page.height);
    // Lines that are thinner than a pixel show, too.
    Add(svg,
        "<g transform=\"translate({:.2f} {:.2f}) scale({:.9g} {:.9g})\" stroke-width=\"{:.9g}\">\n",
        left, top + page.height, page.scale, -page.scale, 0.5 / page.scale);
    for (const PictureGroup& group : groups) {
        if (group.shapes.empty()) {
            continue;
        }
        const std::string color = SvgColor(group.color);
        Add(svg, "<g opacity=\"0.6\" fill=\"{0}\" stroke=\"{0}\">\n<title>{1}</title>\n", color,
            ShownXmlText(group.title));
        for (const std::vector<GdsPoint>& shape : group.shapes) {
            svg += "<path d=\"" + SvgPath(shape) + "\"/>\n";
        }
        svg += "</g>\n";
    }
    svg += "</g>\n</g>\n";
}

void AddAxes(std::string& svg, const Page& page) {
    const double unit = page.micronsPerUnit;
    const double bottom = top + page.height;
    constexpr double ticksEvery = 90.0;
    constexpr double tick = 6.0;
    Add(svg,
        "<rect x=\"{:.2f}\" y=\"{:.2f}\" width=\"{:.2f}\" height=\"{:.2f}\" fill=\"none\" "
        "stroke=\"black\"/>\n<g stroke=\"black\" font-size=\"12\" fill=\"black\">\n",
        left, top, page.width, page.height);
    const auto leastStep = [&](std::int64_t range, double length) {
        return static_cast<double>(range) * unit / std::max(2.0, std::floor(length / ticksEvery));
    };
    for (const AxisTick& each : AxisTicks(static_cast<double>(page.view.x0) * unit,
                                          static_cast<double>(page.view.x1) * unit,
                                          leastStep(page.view.x1 - page.view.x0, page.width))) {
        const double x = page.X(each.at);
        Add(svg,
            "<line x1=\"{0:.2f}\" y1=\"{1:.2f}\" x2=\"{0:.2f}\" y2=\"{2:.2f}\"/><text "
            "x=\"{0:.2f}\" "
            "y=\"{3:.2f}\" text-anchor=\"middle\" stroke=\"none\">{4}</text>\n",
            x, bottom, bottom + tick, bottom + tick + 13.0, each.label);
    }
    for (const AxisTick& each : AxisTicks(static_cast<double>(page.view.y0) * unit,
                                          static_cast<double>(page.view.y1) * unit,
                                          leastStep(page.view.y1 - page.view.y0, page.height))) {
        const double y = page.Y(each.at);
        Add(svg,
            "<line x1=\"{1:.2f}\" y1=\"{0:.2f}\" x2=\"{2:.2f}\" y2=\"{0:.2f}\"/><text "
            "x=\"{3:.2f}\" "
            "y=\"{4:.2f}\" text-anchor=\"end\" stroke=\"none\">{5}</text>\n",
            y, left - tick, left, left - tick - 3.0, y + 4.0, each.label);
    }
    Add(svg,
        "<text x=\"{:.2f}\" y=\"{:.2f}\" text-anchor=\"middle\" stroke=\"none\">x in um</text>\n"
        "<text x=\"{:.2f}\" y=\"{:.2f}\" stroke=\"none\">y in um</text>\n</g>\n",
        left + page.width / 2.0, bottom + 42.0, left, top - 8.0);
}

void AddWindow(std::string& svg, const Page& page, const GivenWindow& window) {
    const double x = page.X(static_cast<double>(window.x));
    const double y = page.Y(static_cast<double>(window.y) + static_cast<double>(window.height));
    const double width = static_cast<double>(window.width) / page.micronsPerUnit * page.scale;
    const double height = static_cast<double>(window.height) / page.micronsPerUnit * page.scale;
    Add(svg,
        "<rect x=\"{:.2f}\" y=\"{:.2f}\" width=\"{:.2f}\" height=\"{:.2f}\" fill=\"none\" "
        "stroke=\"black\" stroke-width=\"1.5\" stroke-dasharray=\"7 "
        "4\"><title>window</title></rect>\n"
        "<text x=\"{:.2f}\" y=\"{:.2f}\" font-size=\"12\">window</text>\n",
        x, y, width, height, x + 4.0, y - 4.0);
}

void AddLegend(std::string& svg, const Page& page, const std::vector<PictureGroup>& groups) {
    const double x = left + page.width + 25.0;
    double y = top;
    svg += "<g font-size=\"13\">\n";
    for (const PictureGroup& group : groups) {
        const std::string color = SvgColor(group.color);
        Add(svg,
            "<rect x=\"{0:.2f}\" y=\"{1:.2f}\" width=\"18\" height=\"13\" fill=\"{2}\" "
            "fill-opacity=\"0.6\" stroke=\"{2}\"/><text x=\"{3:.2f}\" "
            "y=\"{4:.2f}\">{5}{6}</text>\n",
            x, y, color, x + 26.0, y + 11.0, ShortXmlText(group.title, longestTitle),
            group.shapes.empty() ? " (none drawn)" : "");
        y += legendLine;
    }
    svg += "</g>\n";
}

std::string Title(const LayoutReading& reading, const CellFacts& facts,
                  const ReportSubject& subject) {
    std::string title(NameText(reading.database.cells[facts.cell].name));
    title += " of " + subject.layout;
    return subject.process.empty() ? title : title + ", masks of " + subject.process;
}

}  // namespace

LayoutPicture DrawLayout(const LayoutReading& reading, const CellFacts& facts,
                         const ReportSubject& subject, const PictureLimits& limits) {
    constexpr std::size_t longestHead = 110;
    LayoutPicture picture;
    const PictureView view = ViewOf(reading, facts);
    PictureShapes shapes = CollectShapes(reading, facts, subject, view, limits);
    picture.leftOut = shapes.leftOut;
    picture.failure = shapes.failure;
    if (!picture.failure.empty()) {
        return picture;
    }
    const Page page = LayOutPage(view, reading.database.micronsPerUnit, shapes.groups.size());
    const double width = left + page.width + legendWidth;
    std::string& svg = picture.svg;
    Add(svg,
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg xmlns=\"http://www.w3.org/2000/svg\" "
        "width=\"{0:.0f}\" height=\"{1:.0f}\" viewBox=\"0 0 {0:.0f} {1:.0f}\" "
        "font-family=\"sans-serif\">\n<rect width=\"100%\" height=\"100%\" fill=\"white\"/>\n"
        "<text x=\"{2:.2f}\" y=\"22\" font-size=\"15\">{3}</text>\n",
        width, page.pageHeight, left, ShortXmlText(Title(reading, facts, subject), longestHead));
    AddShapes(svg, page, shapes.groups);
    AddAxes(svg, page);
    if (facts.window) {
        AddWindow(svg, page, *facts.window);
    }
    AddLegend(svg, page, shapes.groups);
    if (!picture.leftOut.empty()) {
        Add(svg, "<text x=\"{:.2f}\" y=\"{:.2f}\" font-size=\"12\" fill=\"#A00000\">{}</text>\n",
            left, page.pageHeight - 8.0, ShownXmlText(picture.leftOut));
    }
    svg += "</svg>\n";
    return picture;
}

}  // namespace zelmo
