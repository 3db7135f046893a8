#include "render/slide/slide_layout.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "base/conversions.h"
#include "model/process_model.h"
#include "render/picture_choice.h"

namespace zelmo {

namespace {

// Lengths in a picture that is 1920 pixels wide
constexpr double legendWidth = 352.0;
constexpr double titleBand = 76.0;
constexpr double titleRise = 20.0;  // of the base line in its band
constexpr double remarkBand = 40.0;
constexpr double remarkRise = 12.0;
constexpr double bandBelow = 56.0;  // for the width, or a bar
constexpr double bandAbove = 24.0;
constexpr double bandAboveWithLabels = 44.0;
constexpr double bandBesideWithBars = 84.0;

std::int32_t Rounded(double length) {
    return TruncateToI32(std::round(length));
}

/// Grows a box to hold another one.
void Hold(PixelPoint& lowerLeft, PixelPoint& upperRight, const PixelPoint& otherLowerLeft,
          const PixelPoint& otherUpperRight) {
    lowerLeft = {std::min(lowerLeft.x, otherLowerLeft.x), std::min(lowerLeft.y, otherLowerLeft.y)};
    upperRight = {std::max(upperRight.x, otherUpperRight.x),
                  std::max(upperRight.y, otherUpperRight.y)};
}

}  // namespace

SlideLayout LayOutSlide(const PictureChoice& choice, const ProcessSettings& settings, double aspect,
                        std::int32_t layerCount) {
    SlideLayout layout;
    layout.width = choice.width;
    layout.unit = static_cast<double>(choice.width) / usualPictureWidth;
    const auto pixels = [&](double length) { return Rounded(length * layout.unit); };
    layout.legendWidth = settings.showLegend ? pixels(legendWidth) : 0;
    layout.legendHeight =
        settings.showLegend ? pixels(slideLegendPitch * layerCount + 2.0 * slideLegendMargin) : 0;
    const std::int32_t heading = choice.title ? pixels(titleBand) : 0;
    const std::int32_t remark = choice.thinnestFilm > 0.0f ? pixels(remarkBand) : 0;
    const std::int32_t below = pixels(bandBelow);
    const std::int32_t above =
        pixels(settings.showHeights ? bandAboveWithLabels : bandAbove) + heading + remark;
    const std::int32_t beside = choice.scale ? pixels(bandBesideWithBars) : 0;

    PixelRect& view = layout.view;
    view.left = layout.legendWidth + beside;
    view.width = std::max(layout.width - view.left - beside, 1);
    view.height = std::max(TruncateToI32(view.width / aspect), 1);
    const std::int64_t needed = std::max({std::int64_t{view.height} + below + above,
                                          std::int64_t{layout.legendHeight} + heading + remark,
                                          std::int64_t{Rounded(layout.width / aspect)}});
    constexpr std::int64_t mostTimesWidth = 64;
    if (needed > mostTimesWidth * layout.width) {
        throw std::runtime_error("the picture would be too high");
    }
    layout.height = static_cast<std::int32_t>(needed);
    view.bottom = below + (layout.height - below - above - view.height) / 2;
    if (choice.title) {
        layout.titleBase = layout.height - heading + titleRise * layout.unit;
    }
    if (remark > 0) {
        layout.remarkBase = layout.height - heading - remark + remarkRise * layout.unit;
    }
    return layout;
}

SlideLayout Magnify(const SlideLayout& layout, std::int32_t factor) {
    SlideLayout large = layout;
    large.unit *= factor;
    for (std::int32_t* const length :
         {&large.width, &large.height, &large.view.left, &large.view.bottom, &large.view.width,
          &large.view.height, &large.legendWidth, &large.legendHeight}) {
        *length *= factor;
    }
    for (std::optional<double>* const base : {&large.titleBase, &large.remarkBase}) {
        if (*base) {
            **base *= factor;
        }
    }
    return large;
}

PixelPoint Projector::At(const Vector3& position) const {
    const auto row = [&](std::size_t i) {
        const auto part = [&](std::size_t axis) {
            return static_cast<double>(transform[4 * axis + i]) *
                   static_cast<double>(position[axis]);
        };
        return part(0) + part(1) + part(2) + static_cast<double>(transform[12 + i]);
    };
    const double w = row(3);
    const double scale = w != 0.0 ? 1.0 / w : 1.0;
    return {(row(0) * scale + 1.0) * view.width * 0.5 + view.left,
            (row(1) * scale + 1.0) * view.height * 0.5 + view.bottom};
}

PixelRect FindContents(const SlideLayout& layout, const PictureChoice& choice,
                       const ProcessSettings& settings, const Projector& projector,
                       const Vector3& box) {
    const double unit = layout.unit;
    PixelPoint lowerLeft{static_cast<double>(layout.width), static_cast<double>(layout.height)};
    PixelPoint upperRight{};
    for (unsigned corner = 0; corner < 8; ++corner) {
        const PixelPoint at =
            projector.At({(corner & 1) != 0 ? box[0] : 0.0f, (corner & 2) != 0 ? box[1] : 0.0f,
                          (corner & 4) != 0 ? box[2] : 0.0f});
        Hold(lowerLeft, upperRight, at, at);
    }
    const double beside = choice.scale ? bandBesideWithBars * unit : 0.0;
    lowerLeft = {lowerLeft.x - beside, lowerLeft.y - bandBelow * unit};
    upperRight = {upperRight.x + beside,
                  upperRight.y + (settings.showHeights ? bandAboveWithLabels * unit : 0.0)};
    const double margin = slideLegendMargin * unit;
    if (layout.legendWidth > 0) {
        Hold(lowerLeft, upperRight, {margin, margin},
             {static_cast<double>(layout.legendWidth), layout.legendHeight - margin});
    }
    if (layout.titleBase || layout.remarkBase) {
        Hold(lowerLeft, upperRight, {margin, upperRight.y},
             {layout.width - margin, layout.height - margin});
    }
    const std::int32_t left = Rounded(std::floor(lowerLeft.x));
    const std::int32_t bottom = Rounded(std::floor(lowerLeft.y));
    return {left, bottom, Rounded(std::ceil(upperRight.x)) - left,
            Rounded(std::ceil(upperRight.y)) - bottom};
}

}  // namespace zelmo
