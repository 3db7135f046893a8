#include "tests/batch/decoded_png.h"

#include <gtest/gtest.h>
#include <png.h>

#include <stdexcept>

namespace zelmo {

Pixels DecodePng(const std::string& bytes) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    if (png_image_begin_read_from_memory(&image, bytes.data(), bytes.size()) == 0) {
        throw std::runtime_error(image.message);
    }
    EXPECT_EQ(image.format, static_cast<png_uint_32>(PNG_FORMAT_RGB));
    image.format = PNG_FORMAT_RGB;
    Pixels pixels{image.width, image.height, std::vector<std::uint8_t>(PNG_IMAGE_SIZE(image))};
    if (png_image_finish_read(&image, nullptr, pixels.rgb.data(), 0, nullptr) == 0) {
        throw std::runtime_error(image.message);
    }
    return pixels;
}

}  // namespace zelmo
