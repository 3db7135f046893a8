#pragma once

#include <cstddef>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <string>
#include <string_view>

#include "pictures/step_image.h"

namespace zelmo {

/// The folder for the pictures of a process file: its path up to the last dot anywhere in it, and
/// the present local time as " %Y-%m-%d %H-%M-%S". A path without a dot is kept whole.
std::filesystem::path MakeOutputFolderName(const std::filesystem::path& processFileName);

/// The same for a given time.
std::filesystem::path MakeOutputFolderName(const std::filesystem::path& processFileName,
                                           const std::tm& time);

/// "003 008 oxide deposition.bmp" for the third picture of a save. `extension` without its dot.
std::wstring SavedImageName(std::size_t ordinal, std::wstring_view imageName,
                            std::wstring_view extension);
std::wstring SavedImageName(std::size_t ordinal, const StepImage& image,
                            std::wstring_view extension);

/// Writes a 32-bit bitmap file. False if the picture is empty or the file cannot be opened; a disk
/// that fills up is not noticed.
bool WriteBitmap(const StepImage& image, const std::filesystem::path& path);

/// Writes the bytes of a bitmap file. False if the picture is empty or a write failed; `file` is
/// buffered, so a failure may show only when it is closed.
bool WriteBitmap(const StepImage& image, std::FILE* file);

}  // namespace zelmo
