#pragma once

#include <filesystem>
#include <string_view>
#include <vector>

namespace zelmo {

/// The folder that the program's file lies in; empty if that cannot be told.
std::filesystem::path ProgramFolder();

/// Where a program has its data files: beside it, or in share/zelmo of its installation. None for
/// a program that does not know its folder.
std::vector<std::filesystem::path> InstalledDataFolders(
    const std::filesystem::path& programFolder = ProgramFolder());

/// The first file of this name in one of the folders, or where the first of them would have it.
std::filesystem::path FindDataFile(const std::vector<std::filesystem::path>& folders,
                                   std::string_view name);

}  // namespace zelmo
