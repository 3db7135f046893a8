#include "render/slide/picture_pixels.h"

#include <algorithm>
#include <cstddef>
#include <limits>

#include "base/row_bands.h"

namespace zelmo {

namespace {

constexpr std::int32_t fewestPictureRows = 16;  // for a thread

std::int32_t Pieces(std::int64_t length, std::int64_t most) {
    return static_cast<std::int32_t>((length + most - 1) / most);
}

/// The place where piece `i` of so many begins.
std::int32_t Start(std::int32_t length, std::int32_t pieces, std::int32_t i) {
    return static_cast<std::int32_t>(std::int64_t{length} * i / pieces);
}

std::size_t RowBytes(const StepImage& image) {
    return static_cast<std::size_t>(image.width) * bytesPerPixel;
}

std::uint8_t* RowOf(StepImage& image, std::int32_t row) {
    return image.pixels.data() + static_cast<std::size_t>(row) * RowBytes(image);
}

const std::uint8_t* RowOf(const StepImage& image, std::int32_t row) {
    return image.pixels.data() + static_cast<std::size_t>(row) * RowBytes(image);
}

/// The first and last drawn pixel of a row.
struct RowReach {
    std::int32_t first = std::numeric_limits<std::int32_t>::max();
    std::int32_t last = -1;
};

RowReach FindReach(const std::uint8_t* row, std::int32_t width) {
    RowReach reach;
    const auto isDrawn = [&](std::int32_t x) {
        return row[static_cast<std::size_t>(x) * bytesPerPixel + 3] != 0;
    };
    std::int32_t x = 0;
    while (x < width && !isDrawn(x)) {
        ++x;
    }
    if (x == width) {
        return reach;
    }
    reach.first = x;
    reach.last = width - 1;
    while (!isDrawn(reach.last)) {
        --reach.last;
    }
    return reach;
}

std::uint8_t Limited(std::uint32_t value) {
    return static_cast<std::uint8_t>(std::min<std::uint32_t>(value, 255));
}

}  // namespace

std::vector<PixelRect> DivideIntoParts(std::int32_t width, std::int32_t height,
                                       std::int32_t mostWidth, std::int32_t mostHeight,
                                       std::int64_t mostPixels) {
    std::vector<PixelRect> parts;
    const std::int32_t columns = Pieces(width, mostWidth);
    const std::int64_t partWidth = Pieces(width, columns);
    const std::int32_t rows =
        Pieces(height, std::clamp<std::int64_t>(mostPixels / partWidth, 1, mostHeight));
    for (std::int32_t row = 0; row < rows; ++row) {
        for (std::int32_t column = 0; column < columns; ++column) {
            const std::int32_t left = Start(width, columns, column);
            const std::int32_t bottom = Start(height, rows, row);
            parts.push_back({left, bottom, Start(width, columns, column + 1) - left,
                             Start(height, rows, row + 1) - bottom});
        }
    }
    return parts;
}

void AverageSquares(std::span<const std::uint8_t> rows, std::int32_t factor, std::size_t count,
                    std::uint8_t* means) {
    const auto side = static_cast<std::size_t>(factor);
    const std::size_t rowBytes = count * side * bytesPerPixel;
    const auto samples = static_cast<std::uint32_t>(factor * factor);
    for (std::size_t pixel = 0; pixel < count; ++pixel) {
        std::uint32_t sums[bytesPerPixel] = {};
        for (std::size_t y = 0; y < side; ++y) {
            const std::uint8_t* from = rows.data() + y * rowBytes + pixel * side * bytesPerPixel;
            for (std::size_t i = 0; i < side * bytesPerPixel; ++i) {
                sums[i % bytesPerPixel] += from[i];
            }
        }
        for (std::size_t channel = 0; channel < bytesPerPixel; ++channel) {
            means[pixel * bytesPerPixel + channel] =
                static_cast<std::uint8_t>((sums[channel] + samples / 2) / samples);
        }
    }
}

PixelRect FindDrawn(const StepImage& image) {
    PixelRect drawn;
    RowReach all;
    for (std::int32_t row = 0; row < image.height; ++row) {
        const RowReach reach = FindReach(RowOf(image, row), image.width);
        if (reach.last < 0) {
            continue;
        }
        if (all.last < 0) {
            drawn.bottom = row;
        }
        drawn.height = row + 1 - drawn.bottom;
        all.first = std::min(all.first, reach.first);
        all.last = std::max(all.last, reach.last);
    }
    if (all.last >= 0) {
        drawn.left = all.first;
        drawn.width = all.last + 1 - all.first;
    }
    return drawn;
}

void FinishPixels(StepImage& image, bool transparent) {
    image.isTransparent = transparent;
    ForRowBands(image.height, fewestPictureRows, [&](std::int32_t first, std::int32_t end) {
        std::uint8_t* const stop = RowOf(image, end);
        for (std::uint8_t* pixel = RowOf(image, first); pixel != stop; pixel += bytesPerPixel) {
            const std::uint32_t alpha = pixel[3];
            for (std::size_t channel = 0; channel < 3; ++channel) {
                const std::uint32_t color = pixel[channel];
                if (!transparent) {
                    pixel[channel] = Limited(color + 255 - alpha);
                } else if (alpha != 0) {
                    pixel[channel] = Limited((color * 255 + alpha / 2) / alpha);
                }
            }
            if (!transparent) {
                pixel[3] = 255;
            }
        }
    });
}

void Crop(StepImage& image, const PixelRect& part) {
    const std::int32_t left = std::clamp(part.left, 0, image.width);
    const std::int32_t right = std::clamp(part.left + part.width, left, image.width);
    const std::int32_t bottom = std::clamp(part.bottom, 0, image.height);
    const std::int32_t top = std::clamp(part.bottom + part.height, bottom, image.height);
    if (left == right || bottom == top) {
        return;
    }
    const std::size_t skipped = static_cast<std::size_t>(left) * bytesPerPixel;
    const std::size_t kept = static_cast<std::size_t>(right - left) * bytesPerPixel;
    std::uint8_t* to = image.pixels.data();
    for (std::int32_t row = bottom; row < top; ++row) {
        const std::uint8_t* const from = RowOf(image, row) + skipped;
        to = std::copy(from, from + kept, to);
    }
    image.width = right - left;
    image.height = top - bottom;
    image.pixels.resize(kept * static_cast<std::size_t>(image.height));
}

}  // namespace zelmo
