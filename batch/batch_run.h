#pragma once

#include "batch/options.h"
#include "command_line/exit_status.h"

namespace zelmo {

/// Loads the layout, prepares the process, executes its steps and saves their pictures. Whatever
/// goes wrong ends as one line on standard error and its exit status.
ExitStatus RunBatch(const BatchOptions& options);

/// The whole program: `arguments` are those behind the program's name.
ExitStatus RunProgram(const std::vector<std::string>& arguments);

}  // namespace zelmo
