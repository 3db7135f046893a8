#include "batch/png.h"

#include <png.h>

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <system_error>
#include <vector>

namespace zelmo {

namespace {

/// The picture's pixels without their alpha, in the same order: blue, green, red.
std::vector<std::uint8_t> DropAlpha(const StepImage& image) {
    const std::size_t count =
        static_cast<std::size_t>(image.width) * static_cast<std::size_t>(image.height);
    std::vector<std::uint8_t> pixels(count * 3);
    for (std::size_t i = 0; i < count; ++i) {
        for (std::size_t channel = 0; channel < 3; ++channel) {
            pixels[i * 3 + channel] = image.pixels[i * 4 + channel];
        }
    }
    return pixels;
}

}  // namespace

bool WritePng(const StepImage& image, std::FILE* file, std::string& reason) {
    if (image.width < 1 || image.height < 1) {
        reason = "the picture is empty";
        return false;
    }
    const std::vector<std::uint8_t> pixels = DropAlpha(image);
    png_image png{};
    png.version = PNG_IMAGE_VERSION;
    png.width = static_cast<png_uint_32>(image.width);
    png.height = static_cast<png_uint_32>(image.height);
    png.format = PNG_FORMAT_BGR;
    // A negative stride tells that the last row comes first.
    const png_int_32 stride = -image.width * 3;
    errno = 0;
    if (png_image_write_to_stdio(&png, file, 0, pixels.data(), stride, nullptr) == 0) {
        reason = errno != 0 ? std::generic_category().message(errno) : std::string(png.message);
        return false;
    }
    return true;
}

}  // namespace zelmo
