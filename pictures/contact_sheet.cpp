#include "pictures/contact_sheet.h"

#include <algorithm>
#include <cmath>
#include <new>

namespace zelmo {

namespace {

constexpr std::int32_t gap = 16;  ///< pixels
constexpr double screenAspect = 16.0 / 10.0;
constexpr std::uint8_t white = 0xFF;

StepImage WhiteImage(std::int32_t width, std::int32_t height) {
    StepImage image;
    image.width = width;
    image.height = height;
    image.pixels.assign(
        static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * bytesPerPixel, white);
    return image;
}

/// A channel of a picture without a background, as it looks on white.
std::uint8_t OnWhite(std::uint8_t value, std::uint8_t alpha) {
    return static_cast<std::uint8_t>((value * alpha + white * (white - alpha) + white / 2) / white);
}

/// Puts a picture with its lower left corner there, where it has room.
void Put(const StepImage& source, std::int32_t left, std::int32_t bottom, StepImage& target) {
    const std::size_t length = static_cast<std::size_t>(source.width) * bytesPerPixel;
    for (std::int32_t row = 0; row < source.height; ++row) {
        const std::uint8_t* const from =
            source.pixels.data() + static_cast<std::size_t>(row) * length;
        std::uint8_t* const to =
            target.pixels.data() +
            (static_cast<std::size_t>(bottom + row) * static_cast<std::size_t>(target.width) +
             static_cast<std::size_t>(left)) *
                bytesPerPixel;
        for (std::size_t i = 0; i < length; ++i) {
            const std::size_t alphaAt = i / bytesPerPixel * bytesPerPixel + 3;
            const std::uint8_t alpha = source.isTransparent ? from[alphaAt] : white;
            to[i] = i == alphaAt ? white : OnWhite(from[i], alpha);
        }
    }
}

}  // namespace

StepImage StackImages(const StepImage& upper, const StepImage& lower) {
    StepImage both = WhiteImage(std::max(upper.width, lower.width), upper.height + lower.height);
    Put(upper, (both.width - upper.width) / 2, lower.height, both);
    Put(lower, (both.width - lower.width) / 2, 0, both);
    return both;
}

std::int32_t SheetColumns(std::size_t count, std::int32_t width, std::int32_t height) {
    std::int32_t best = 1;
    double bestDistance = INFINITY;
    for (std::size_t columns = 1; columns <= count; ++columns) {
        const std::size_t rows = (count + columns - 1) / columns;
        const double aspect = static_cast<double>(columns) * (width + gap) /
                              (static_cast<double>(rows) * (height + gap));
        const double ratio = aspect / screenAspect;
        const double distance = std::max(ratio, 1.0 / ratio);
        if (distance < bestDistance) {
            bestDistance = distance;
            best = static_cast<std::int32_t>(columns);
        }
    }
    return best;
}

StepImage ContactSheet(std::size_t count, std::int32_t width, std::int32_t height,
                       std::int32_t columns,
                       const std::function<StepImage(std::size_t)>& pictureOf) {
    const auto across = static_cast<std::size_t>(columns);
    const auto rows = static_cast<std::int32_t>((count + across - 1) / across);
    const std::int64_t sheetWidth = std::int64_t{columns} * (width + gap) + gap;
    const std::int64_t sheetHeight = std::int64_t{rows} * (height + gap) + gap;
    constexpr std::int64_t most = 1 << 20;  // no reader takes more
    if (sheetWidth > most || sheetHeight > most) {
        throw std::bad_alloc();
    }
    StepImage sheet =
        WhiteImage(static_cast<std::int32_t>(sheetWidth), static_cast<std::int32_t>(sheetHeight));
    for (std::size_t i = 0; i < count; ++i) {
        const StepImage picture = pictureOf(i);
        const auto column = static_cast<std::int32_t>(i % across);
        const auto row = static_cast<std::int32_t>(i / across);
        const std::int32_t top = sheet.height - gap - row * (height + gap);
        Put(picture, gap + column * (width + gap) + (width - picture.width) / 2,
            top - picture.height, sheet);
    }
    return sheet;
}

}  // namespace zelmo
