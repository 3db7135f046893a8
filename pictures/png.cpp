#include <png.h>

#include <cerrno>
#include <csetjmp>
#include <cstddef>
#include <cstdint>
#include <system_error>

#include "pictures/picture_files.h"

namespace zelmo {

namespace {

/// What libpng works on, and why it gave up.
struct PngJob {
    const StepImage& image;
    std::FILE* file = nullptr;
    std::string problem;
    png_structp png = nullptr;
    png_infop info = nullptr;
};

/// libpng's way to give up is a long jump; the text is kept for the way out.
[[noreturn]] void GiveUp(png_structp png, png_const_charp message) {
    static_cast<PngJob*>(png_get_error_ptr(png))->problem = message;
    png_longjmp(png, 1);
}

void Ignore(png_structp, png_const_charp) {}

/// Writes the file. False if libpng gave up. Nothing here needs a destructor: a long jump runs
/// none.
bool WriteFile(PngJob& job) {
    if (setjmp(png_jmpbuf(job.png)) != 0) {
        return false;
    }
    const auto width = static_cast<png_uint_32>(job.image.width);
    const auto height = static_cast<png_uint_32>(job.image.height);
    png_init_io(job.png, job.file);
    const int colorType = job.image.isTransparent ? PNG_COLOR_TYPE_RGB_ALPHA : PNG_COLOR_TYPE_RGB;
    png_set_IHDR(job.png, job.info, width, height, 8, colorType, PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_set_sRGB(job.png, job.info, PNG_sRGB_INTENT_PERCEPTUAL);
    // Most rows look much like the one above. To try other filters for each row as well takes twice
    // the time and saves nothing.
    png_set_filter(job.png, PNG_FILTER_TYPE_BASE, PNG_FILTER_UP);
    png_set_compression_level(job.png, 6);
    png_write_info(job.png, job.info);
    png_set_bgr(job.png);
    if (!job.image.isTransparent) {
        png_set_filler(job.png, 0, PNG_FILLER_AFTER);  // leaves out the alpha
    }
    const std::size_t rowBytes = std::size_t{width} * 4;
    for (png_uint_32 row = height; row-- > 0;) {
        png_write_row(job.png, job.image.pixels.data() + row * rowBytes);
    }
    png_write_end(job.png, job.info);
    return true;
}

}  // namespace

bool WritePng(const StepImage& image, std::FILE* file, std::string& reason) {
    if (image.width < 1 || image.height < 1) {
        reason = "the picture is empty";
        return false;
    }
    PngJob job{image, file, "there is not enough memory", nullptr, nullptr};
    errno = 0;
    job.png = png_create_write_struct(PNG_LIBPNG_VER_STRING, &job, GiveUp, Ignore);
    job.info = job.png != nullptr ? png_create_info_struct(job.png) : nullptr;
    const bool written = job.info != nullptr && WriteFile(job);
    const int error = errno;
    png_destroy_write_struct(&job.png, &job.info);
    if (!written) {
        reason = error != 0 ? std::generic_category().message(error) : job.problem;
    }
    return written;
}

}  // namespace zelmo
