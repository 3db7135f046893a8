#pragma once

#include <filesystem>
#include <optional>
#include <string_view>
#include <vector>

namespace zelmo {

/// The folders that the program's data files are looked for in: the given one alone, or the
/// program's own, the shared one of an installation, and the current directory.
std::vector<std::filesystem::path> AssetFolders(const std::optional<std::filesystem::path>& given,
                                                const std::filesystem::path& programFolder);

/// The first file of this name, or where the first folder would have it.
std::filesystem::path FindAsset(const std::vector<std::filesystem::path>& folders,
                                std::string_view name);

}  // namespace zelmo
