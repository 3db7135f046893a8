#include "pictures/webp_picture.h"

#include <algorithm>
#include <cstddef>
#include <new>

namespace zelmo {

namespace {

constexpr std::uint32_t opaque = 0xFF000000U;
constexpr std::uint32_t whitePixel = 0xFFFFFFFFU;

void FillRow(const StepImage& image, std::int32_t row, std::uint32_t* target) {
    const std::size_t width = static_cast<std::size_t>(image.width);
    const std::uint8_t* source =
        image.pixels.data() + static_cast<std::size_t>(image.height - 1 - row) * width * 4;
    for (std::size_t col = 0; col < width; ++col, source += 4) {
        const std::uint32_t alpha =
            image.isTransparent ? static_cast<std::uint32_t>(source[3]) << 24 : opaque;
        target[col] = alpha | static_cast<std::uint32_t>(source[2]) << 16 |
                      static_cast<std::uint32_t>(source[1]) << 8 | source[0];
    }
}

}  // namespace

WebpPicture::WebpPicture(const StepImage& image, std::int32_t width, std::int32_t height) {
    WebPPictureInit(&picture_);
    picture_.use_argb = 1;
    picture_.width = width;
    picture_.height = height;
    if (WebPPictureAlloc(&picture_) == 0) {
        throw std::bad_alloc();
    }
    const auto rowOf = [&](std::int32_t row) {
        return picture_.argb + std::ptrdiff_t{row} * picture_.argb_stride;
    };
    if (image.width != width || image.height != height) {
        for (std::int32_t row = 0; row < height; ++row) {
            std::fill_n(rowOf(row), width, image.isTransparent ? 0U : whitePixel);
        }
    }
    const std::int32_t left = (width - image.width) / 2;
    const std::int32_t top = (height - image.height) / 2;
    for (std::int32_t row = 0; row < image.height; ++row) {
        FillRow(image, row, rowOf(top + row) + left);
    }
}

bool FitsWebp(std::int32_t width, std::int32_t height) {
    return width > 0 && height > 0 && width <= WEBP_MAX_DIMENSION && height <= WEBP_MAX_DIMENSION;
}

}  // namespace zelmo
