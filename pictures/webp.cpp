#include "pictures/webp.h"

#include <webp/encode.h>

#include <cstddef>
#include <memory>
#include <new>

namespace zelmo {

namespace {

/// Of the presets from 0, fast, to 9, small: those above take longer and save next to nothing on
/// pictures of few colours.
constexpr int losslessPreset = 3;

struct PictureCloser {
    void operator()(WebPPicture* picture) const { WebPPictureFree(picture); }
};

void FillRow(const StepImage& image, std::int32_t row, std::uint32_t* target) {
    const std::size_t width = static_cast<std::size_t>(image.width);
    const std::uint8_t* source =
        image.pixels.data() + static_cast<std::size_t>(image.height - 1 - row) * width * 4;
    for (std::size_t col = 0; col < width; ++col, source += 4) {
        target[col] = 0xFF000000U | static_cast<std::uint32_t>(source[2]) << 16 |
                      static_cast<std::uint32_t>(source[1]) << 8 | source[0];
    }
}

int AppendBytes(const std::uint8_t* data, std::size_t size, const WebPPicture* picture) {
    auto& bytes = *static_cast<std::vector<std::uint8_t>*>(picture->custom_ptr);
    try {
        bytes.insert(bytes.end(), data, data + size);
    } catch (const std::bad_alloc&) {
        return 0;  // the library is none of C++
    }
    return 1;
}

std::vector<std::uint8_t> Encode(const StepImage& image, const WebPConfig& config) {
    if (image.width < 1 || image.height < 1 || image.width > WEBP_MAX_DIMENSION ||
        image.height > WEBP_MAX_DIMENSION) {
        return {};
    }
    WebPPicture picture;
    WebPPictureInit(&picture);
    picture.use_argb = 1;
    picture.width = image.width;
    picture.height = image.height;
    if (WebPPictureAlloc(&picture) == 0) {
        throw std::bad_alloc();
    }
    const std::unique_ptr<WebPPicture, PictureCloser> closer(&picture);
    for (std::int32_t row = 0; row < image.height; ++row) {
        FillRow(image, row, picture.argb + std::ptrdiff_t{row} * picture.argb_stride);
    }
    std::vector<std::uint8_t> bytes;
    picture.writer = AppendBytes;
    picture.custom_ptr = &bytes;
    if (WebPEncode(&config, &picture) == 0) {
        throw std::bad_alloc();  // nothing else can be wrong with such a picture
    }
    return bytes;
}

}  // namespace

std::vector<std::uint8_t> LosslessWebp(const StepImage& image) {
    WebPConfig config;
    WebPConfigInit(&config);
    WebPConfigLosslessPreset(&config, losslessPreset);
    return Encode(image, config);
}

std::vector<std::uint8_t> LossyWebp(const StepImage& image, float quality) {
    WebPConfig config;
    WebPConfigPreset(&config, WEBP_PRESET_DRAWING, quality);
    return Encode(image, config);
}

}  // namespace zelmo
