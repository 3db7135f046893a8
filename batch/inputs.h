#pragma once

#include <filesystem>
#include <memory>

#include "process_file/color_table.h"

namespace zelmo {

class LogConsole;
struct GdsDatabase;
struct ProcessModel;

// What a run starts from. Each throws BatchFailure with the file and the reason.

/// Reads the colour names.
ColorTable LoadColors(const std::filesystem::path& path);

/// Loads a layout, with the lines of the Load GDS command on the console.
std::unique_ptr<GdsDatabase> LoadLayoutFile(const std::filesystem::path& path, LogConsole* console);

/// Reads a process file and prepares its run, with the lines of the Run command on the console.
std::unique_ptr<ProcessModel> PrepareProcess(const std::filesystem::path& path,
                                             const GdsDatabase& database, const ColorTable& colors,
                                             LogConsole* console);

}  // namespace zelmo
