#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

#include "shell/step_image.h"

namespace zelmo {

/// The folder for the pictures of a process file: its path up to the last dot, and the present
/// local time as " %Y-%m-%d %H-%M-%S".
std::filesystem::path MakeOutputFolderName(const std::filesystem::path& processFileName);

/// "003 008 oxide deposition.bmp" for the third picture of a save. `extension` without its dot.
std::wstring SavedImageName(std::size_t ordinal, const StepImage& image, std::wstring_view extension);

/// Writes a 32-bit bitmap file. False if the picture is empty or the file cannot be opened.
bool WriteBitmap(const StepImage& image, const std::filesystem::path& path);

}  // namespace zelmo
