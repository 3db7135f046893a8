#pragma once

#include <cstdio>
#include <filesystem>
#include <string>
#include <string_view>

#include "pictures/step_image.h"

namespace zelmo {

// Writers of pictures. Each is false, with the reason in `reason`, if the picture is empty or a
// write failed; `file` is buffered, so a failure may show only when it is closed.

/// A 32-bit bitmap: the pixels as they stand.
bool WriteBitmap(const StepImage& image, std::FILE* file, std::string& reason);

/// An 8-bit RGB file, top row first, or RGBA of a transparent picture. The alpha of others is left
/// out: it only records how translucent layers were blended, and would make them see-through on a
/// slide.
bool WritePng(const StepImage& image, std::FILE* file, std::string& reason);

/// A kind of picture file.
struct PictureFormat {
    std::string_view name;        ///< as a user asks for it
    std::wstring_view extension;  ///< of its files, without the dot
    bool (*write)(const StepImage& image, std::FILE* file, std::string& reason);
};

/// All kinds, the usual one first.
inline constexpr PictureFormat pictureFormats[] = {
    {"png", L"png", WritePng},
    {"bmp", L"bmp", WriteBitmap},
};

/// Writes a whole bitmap file. False if the picture is empty or the file cannot be opened; a disk
/// that fills up is not noticed.
bool WriteBitmap(const StepImage& image, const std::filesystem::path& path);

}  // namespace zelmo
