#include "render/slide/slide_overlays.h"

#include <GL/glew.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <vector>

#include "model/process_model.h"
#include "render/height_markers.h"
#include "render/picture_camera.h"
#include "render/picture_texts.h"
#include "render/slide/scale_bars.h"
#include "render/slide/slide_canvas.h"

namespace zelmo {

namespace {

// Lengths in a picture that is 1920 pixels wide
constexpr double markRadius = 8.0;
constexpr double swatchWidth = 72.0;
constexpr double swatchHeight = 28.0;
constexpr double frameWidth = 2.0;
constexpr double legendTextLeft = 106.0;
constexpr double legendTextRise = 8.0;  // of the base line above the swatch's foot
constexpr double barWidth = 4.0;
constexpr double barTick = 14.0;

constexpr double flatElevation = 15.0;  // below this only the nearest row of marks is shown
constexpr std::int32_t markColumns = 10;
constexpr InkColor whiteInk{1.0f, 1.0f, 1.0f, 1.0f};
constexpr InkColor frameInk{0.35f, 0.35f, 0.35f, 1.0f};

Vector3 PositionOf(const MarkerVertex& marker) {
    return {marker.position[0], marker.position[1], marker.position[2]};
}

/// How far a point of the view is from its nearest plane to its furthest, as a clip coordinate, if
/// it is brought nearer to the eye by a little of the view's width: a mark lies on the surface,
/// which would cut its lower half off.
float LiftedDepth(const Matrix4& m, const Vector3& position) {
    constexpr double lift = 0.02;
    const auto row = [&](std::size_t i) {
        return std::array<double, 4>{static_cast<double>(m[i]), static_cast<double>(m[4 + i]),
                                     static_cast<double>(m[8 + i]), static_cast<double>(m[12 + i])};
    };
    const auto dot = [](const std::array<double, 4>& a, const std::array<double, 4>& b) {
        return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
    };
    const std::array<double, 4> place{static_cast<double>(position[0]),
                                      static_cast<double>(position[1]),
                                      static_cast<double>(position[2]), 1.0};
    const std::array<double, 4> across = row(0);
    const std::array<double, 4> depth = row(2);
    const std::array<double, 4> away = row(3);
    const double z = dot(depth, place) + depth[3];
    if (!(dot(away, away) > 0.0)) {  // no perspective
        return static_cast<float>(z - lift * 2.0 / std::sqrt(dot(across, across)) *
                                          std::sqrt(dot(depth, depth)));
    }
    // In perspective, depth is a + b / distance.
    const double distance = dot(away, place) + away[3];
    const double viewWidth = 2.0 * distance / std::sqrt(dot(across, across));
    const double a = dot(depth, away) / dot(away, away);
    const double b = z - a * distance;
    return static_cast<float>(a + b / (distance - lift * viewWidth));
}

/// Whether a mark is shown: in a flat view only those of the side that is nearest.
bool IsShown(const SlideContents& contents, std::size_t marker) {
    if (std::abs(contents.camera.elevation) >= flatElevation) {
        return true;
    }
    const auto column = static_cast<std::int32_t>(marker) % markColumns;
    const auto row = static_cast<std::int32_t>(marker) / markColumns;
    const WindowSides& seen = contents.camera.seen;
    const Matrix4& m = contents.camera.transform;
    // What turns to the right as one goes to the back shows the right side first, and so on.
    const bool isSideways = std::abs(m[4]) > std::abs(m[0]);
    if (isSideways) {
        return column == (seen.right ? markColumns - 1 : 0);
    }
    const auto rows = static_cast<std::int32_t>(contents.drawn.rowCount);
    return row == (seen.back ? rows - 1 : 0);
}

void DrawHeights(SlideCanvas& canvas, const Projector& projector, const SlideContents& contents) {
    const GlFont font = canvas.Font(24.0, 900);
    const std::vector<MarkerVertex>& markers = contents.drawn.vertices;
    for (std::size_t k = 0; k < markers.size(); ++k) {
        if (!IsShown(contents, k)) {
            continue;
        }
        const PixelPoint place = projector.At(PositionOf(markers[k]));
        const std::string text = HeightText(contents.measured.vertices[k].position[2] -
                                            contents.stack.substrateThickness);
        canvas.Text(text, {place.x - AverageLength(text, font) * 0.5, place.y + font.height * 0.5},
                    font);
    }
}

/// A text beside an edge: so far away from it that they do not touch.
void DrawTextBeside(SlideCanvas& canvas, const std::string& text, const PixelPoint& place,
                    const PixelPoint& outward, double away, const GlFont& font) {
    const double distance = away + std::abs(outward.x) * AverageLength(text, font) * 0.5 +
                            std::abs(outward.y) * font.height * 0.4;
    canvas.CentredText(text, {place.x + outward.x * distance, place.y + outward.y * distance},
                       font);
}

/// The width of the window, in the middle of an edge along x, unless a bar leaves no room there.
void DrawWidth(SlideCanvas& canvas, const Projector& projector, const SlideContents& contents) {
    constexpr double roomForBoth = 800.0;
    const std::optional<OutlineEdge> edge = FindOutlineEdge(projector, contents.box, 0);
    if (!edge || (contents.hasBars && edge->length < roomForBoth * canvas.Unit())) {
        return;
    }
    Vector3 middle = edge->from;
    middle[0] = contents.box[0] * 0.5f;
    DrawTextBeside(canvas, WidthText(contents.model.settings.windowWidth), projector.At(middle),
                   edge->outward, 6.0 * canvas.Unit(), canvas.Font(32.0, 700));
}

void DrawBars(SlideCanvas& canvas, const Projector& projector, const SlideContents& contents) {
    const double unit = canvas.Unit();
    const GlFont font = canvas.Font(28.0, 700);
    for (const ScaleBar& bar : FindScaleBars(projector, contents.box, unit)) {
        canvas.Line(bar.from, bar.to, barWidth * unit, blackInk);
        const double x = bar.outward.x * barTick * 0.5 * unit;
        const double y = bar.outward.y * barTick * 0.5 * unit;
        for (const PixelPoint& end : {bar.from, bar.to}) {
            canvas.Line({end.x - x, end.y - y}, {end.x + x, end.y + y}, barWidth * unit, blackInk);
        }
        DrawTextBeside(canvas, bar.text,
                       {(bar.from.x + bar.to.x) * 0.5, (bar.from.y + bar.to.y) * 0.5}, bar.outward,
                       8.0 * unit, font);
    }
}

void DrawFramedSwatch(SlideCanvas& canvas, const Layer& layer, double bottom) {
    const double unit = canvas.Unit();
    const PixelPoint lowerLeft{slideLegendMargin * unit, bottom};
    const PixelPoint upperRight{(slideLegendMargin + swatchWidth) * unit,
                                bottom + swatchHeight * unit};
    const double frame = std::max(frameWidth * unit, 1.0);
    const PixelPoint innerLeft{lowerLeft.x + frame, lowerLeft.y + frame};
    const PixelPoint innerRight{upperRight.x - frame, upperRight.y - frame};
    canvas.Box(lowerLeft, upperRight, frameInk);
    canvas.Box(innerLeft, innerRight, whiteInk);
    canvas.Box(innerLeft, innerRight,
               {layer.color[0], layer.color[1], layer.color[2], layer.alpha});
}

/// The colours and names of the layers, first layer lowest.
void DrawFramedLegend(SlideCanvas& canvas, const SlideLayout& layout, const Stack& stack) {
    const double unit = canvas.Unit();
    const GlFont font = canvas.Font(30.0, 700);
    const std::int32_t maxChars =
        font.averageWidth > 0
            ? static_cast<std::int32_t>((layout.legendWidth - legendTextLeft * unit) /
                                        font.averageWidth)
            : std::numeric_limits<std::int32_t>::max();
    double bottom = (slideLegendMargin + (slideLegendPitch - swatchHeight) * 0.5) * unit;
    for (const std::unique_ptr<Layer>& layer : stack.layers) {
        if (layer == nullptr) {
            continue;
        }
        DrawFramedSwatch(canvas, *layer, bottom);
        canvas.Text(ShortenedText(layer->label, maxChars),
                    {legendTextLeft * unit, bottom + legendTextRise * unit}, font);
        bottom += slideLegendPitch * unit;
    }
}

/// A line of text from the left margin, as much of it as fits.
void DrawLine(SlideCanvas& canvas, const SlideLayout& layout, const std::string& text, double base,
              const GlFont& font) {
    const double margin = slideLegendMargin * canvas.Unit();
    const double room = layout.width - 2.0 * margin;
    const std::int32_t maxChars = font.averageWidth > 0
                                      ? static_cast<std::int32_t>(room / font.averageWidth)
                                      : std::numeric_limits<std::int32_t>::max();
    canvas.Text(ShortenedText(text, maxChars), {margin, base}, font);
}

}  // namespace

void DrawSlideMarks(SlideCanvas& canvas, const SlideLayout& layout, const SlideContents& contents) {
    const Projector projector{contents.camera.transform, layout.view};
    const std::vector<MarkerVertex>& markers = contents.drawn.vertices;
    for (std::size_t k = 0; k < markers.size(); ++k) {
        if (IsShown(contents, k)) {
            const Vector3 position = PositionOf(markers[k]);
            canvas.Mark(projector.At(position), markRadius * canvas.Unit(),
                        LiftedDepth(projector.transform, position));
        }
    }
}

void DrawSlideOverlays(SlideCanvas& canvas, const SlideLayout& layout,
                       const SlideContents& contents) {
    const Projector projector{contents.camera.transform, layout.view};
    const ProcessSettings& settings = contents.model.settings;
    if (settings.showHeights) {
        DrawHeights(canvas, projector, contents);
    }
    DrawWidth(canvas, projector, contents);
    if (contents.hasBars) {
        DrawBars(canvas, projector, contents);
    }
    if (settings.showLegend) {
        DrawFramedLegend(canvas, layout, contents.stack);
    }
    if (layout.titleBase && !contents.title.empty()) {
        DrawLine(canvas, layout, contents.title, *layout.titleBase, canvas.Font(44.0, 700));
    }
    if (layout.remarkBase && !contents.remark.empty()) {
        DrawLine(canvas, layout, contents.remark, *layout.remarkBase, canvas.Font(28.0, 700));
    }
}

}  // namespace zelmo
