#include "batch/assets.h"

#include <system_error>

namespace zelmo {

std::vector<std::filesystem::path> AssetFolders(const std::optional<std::filesystem::path>& given,
                                                const std::filesystem::path& programFolder) {
    if (given) {
        return {*given};
    }
    const std::filesystem::path currentDirectory;
    if (programFolder.empty()) {
        return {currentDirectory};
    }
    return {programFolder, programFolder.parent_path() / "share" / "zelmo", currentDirectory};
}

std::filesystem::path FindAsset(const std::vector<std::filesystem::path>& folders,
                                std::string_view name) {
    for (const std::filesystem::path& folder : folders) {
        std::error_code ignored;
        if (std::filesystem::exists(folder / name, ignored)) {
            return folder / name;
        }
    }
    return folders.front() / name;
}

}  // namespace zelmo
