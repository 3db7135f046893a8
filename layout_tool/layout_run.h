#pragma once

#include <string>
#include <vector>

#include "command_line/exit_status.h"

namespace zelmo {

/// The whole program: `arguments` are those behind the program's name. Whatever goes wrong ends as
/// lines on standard error and an exit status.
ExitStatus RunLayoutTool(const std::vector<std::string>& arguments);

/// Writes "zelmo-layout: <message>" to standard error, as one line whatever the message holds.
void WriteLayoutToolError(const std::string& message);

}  // namespace zelmo
