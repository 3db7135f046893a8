#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "process_file/color_table.h"
#include "process_file/process_file_error.h"
#include "process_run/view_choice.h"

namespace zelmo {

class LogConsole;
struct GdsDatabase;
struct ProcessFile;
struct ProcessModel;

/// A model that is ready to run, or why there is none.
struct PreparedRun {
    std::unique_ptr<ProcessModel> model;
    bool fileOpened = true;           ///< whether there was a process file to read
    std::vector<std::string> errors;  ///< as the console has them, in UTF-8; empty with a model
    std::vector<ProcessFileError> faults;  ///< the same, each with its line, in UTF-8
};

/// Prepares a run: reads the process file, sizes the grid, takes the cell's polygons and builds the
/// tables, with a report on the console. The layout is not needed any more afterwards. What `view`
/// chooses stands in place of what the process file says, which is read and refused as ever.
PreparedRun PrepareRun(const std::filesystem::path& path, const GdsDatabase& gds,
                       const ColorTable& colors, LogConsole* console, const ViewChoice& view = {});

/// The same of a process file that was read. `name` is what the console calls it.
PreparedRun PrepareRun(const std::filesystem::path& name, ProcessFile file, const GdsDatabase& gds,
                       LogConsole* console, const ViewChoice& view);

}  // namespace zelmo
