#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "command_line/exit_status.h"
#include "process_file/color_table.h"
#include "process_file/process_file_error.h"
#include "process_run/view_choice.h"

namespace zelmo {

class LogConsole;
struct GdsDatabase;
struct LayoutError;
struct LayoutOptions;
struct ProcessModel;

// What a run starts from. Each fills its last argument, or fails with the file and the reason.

/// Reads the colour names.
Outcome LoadColors(const std::filesystem::path& path, ColorTable& colors);

/// Loads a layout, with the lines of the Load GDS command on the console.
Outcome LoadLayoutFile(const std::filesystem::path& path, const LayoutOptions& options,
                       LogConsole* console, std::unique_ptr<GdsDatabase>& database);

/// How a layout is refused.
Outcome LayoutRefusal(const std::filesystem::path& path, const LayoutError& error);

/// How the attempt to load a layout, or to run a process file, ends for a reason in words.
Outcome LayoutFailure(const std::filesystem::path& path, const std::string& reason);
Outcome ProcessFailure(const std::filesystem::path& path, const std::string& reason);

/// How a process file is refused for these errors, and the same with their lines.
Outcome ProcessFailure(const std::filesystem::path& path, const std::vector<std::string>& errors,
                       const std::vector<ProcessFileError>& faults);

/// What keeps a file from being opened, as far as looking at it from outside can tell.
std::string WhyNotOpened(const std::filesystem::path& path);

/// Reads a process file and prepares its run, at what `view` chooses, with the lines of the Run
/// command on the console.
Outcome PrepareProcess(const std::filesystem::path& path, const GdsDatabase& database,
                       const ColorTable& colors, const ViewChoice& view, LogConsole* console,
                       std::unique_ptr<ProcessModel>& model);

}  // namespace zelmo
