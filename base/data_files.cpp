#include "base/data_files.h"

#include <system_error>

namespace zelmo {

std::vector<std::filesystem::path> InstalledDataFolders(
    const std::filesystem::path& programFolder) {
    if (programFolder.empty()) {
        return {};
    }
    return {programFolder, programFolder.parent_path() / "share" / "zelmo"};
}

std::filesystem::path FindDataFile(const std::vector<std::filesystem::path>& folders,
                                   std::string_view name) {
    for (const std::filesystem::path& folder : folders) {
        std::error_code ignored;
        if (std::filesystem::exists(folder / name, ignored)) {
            return folder / name;
        }
    }
    return folders.empty() ? std::filesystem::path(name) : folders.front() / name;
}

}  // namespace zelmo
