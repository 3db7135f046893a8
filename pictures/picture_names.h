#pragma once

#include <cstddef>
#include <ctime>
#include <filesystem>
#include <string>
#include <string_view>

// The names of picture files and of the folder that they are saved to.

namespace zelmo {

/// "003 008 oxide deposition.bmp" for the third picture of a save. `extension` without its dot.
std::wstring SavedImageName(std::size_t ordinal, std::wstring_view imageName,
                            std::wstring_view extension);

/// The folder for the pictures of a process file: its path up to the last dot anywhere in it, and
/// the present local time as " %Y-%m-%d %H-%M-%S". A path without a dot is kept whole.
std::filesystem::path MakeOutputFolderName(const std::filesystem::path& processFileName);

/// The same for a given time.
std::filesystem::path MakeOutputFolderName(const std::filesystem::path& processFileName,
                                           const std::tm& time);

}  // namespace zelmo
