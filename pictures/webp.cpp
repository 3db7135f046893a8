#include "pictures/webp.h"

#include <webp/decode.h>
#include <webp/encode.h>

#include <cstddef>
#include <new>

#include "pictures/webp_picture.h"

namespace zelmo {

namespace {

/// Of the presets from 0, fast, to 9, small: those above take longer and save next to nothing on
/// pictures of few colours.
constexpr int losslessPreset = 3;

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
    if (!FitsWebp(image.width, image.height)) {
        return {};
    }
    WebpPicture picture(image, image.width, image.height);
    std::vector<std::uint8_t> bytes;
    picture.Get()->writer = AppendBytes;
    picture.Get()->custom_ptr = &bytes;
    if (WebPEncode(&config, picture.Get()) == 0) {
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

StepImage ImageOfWebp(const std::vector<std::uint8_t>& bytes) {
    WebPBitstreamFeatures features;
    if (WebPGetFeatures(bytes.data(), bytes.size(), &features) != VP8_STATUS_OK) {
        return {};
    }
    StepImage image;
    image.width = features.width;
    image.height = features.height;
    image.isTransparent = features.has_alpha != 0;
    const std::size_t row = static_cast<std::size_t>(image.width) * 4;
    image.pixels.resize(row * static_cast<std::size_t>(image.height));
    // The top row goes last.
    WebPDecoderConfig config;
    WebPInitDecoderConfig(&config);
    config.options.flip = 1;
    config.output.colorspace = MODE_BGRA;
    config.output.is_external_memory = 1;
    config.output.u.RGBA = {image.pixels.data(), static_cast<int>(row), image.pixels.size()};
    if (WebPDecode(bytes.data(), bytes.size(), &config) != VP8_STATUS_OK) {
        throw std::bad_alloc();  // nothing else can be wrong with what the library wrote
    }
    return image;
}

}  // namespace zelmo
