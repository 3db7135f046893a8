#pragma once

#include <optional>
#include <string>

#include "command_line/exit_status.h"
#include "layout_tool/cell_facts.h"
#include "layout_tool/options.h"
#include "process_file/reader.h"

namespace zelmo {

/// Reads the process file that is asked for; none where none is. Fails as a run of it would.
Outcome ReadProcess(const LayoutToolOptions& options, std::optional<ProcessFile>& process);

/// The number of the cell to look into, none if all are to be listed. Fails, with the names that
/// are nearest, if there is no such cell.
Outcome ChooseCell(const LayoutReading& reading, const LayoutToolOptions& options,
                   const std::optional<ProcessFile>& process, std::optional<std::size_t>& cell);

/// Sets the window that is asked for, or that the process file says. Fails if none fits.
Outcome ChooseWindow(const LayoutReading& reading, const LayoutToolOptions& options,
                     const std::optional<ProcessFile>& process, CellFacts& facts);

}  // namespace zelmo
