#pragma once

#include <functional>
#include <optional>
#include <string>

#include "command_line/exit_status.h"

namespace zelmo {

/// How a program ends at once: with `text` on standard output for Success (help, version), else
/// with the one line `text` on standard error.
struct CommandEnd {
    ExitStatus status = ExitStatus::Success;
    std::string text;
};

/// A command line that was understood, or how the program ends at once.
template <typename Options>
struct CommandLineOf {
    std::optional<Options> options;
    CommandEnd end;
};

/// Arguments that are refused for a reason.
CommandEnd WrongUsage(const std::string& reason);

/// Ends the program so; `writeErrorLine` knows its name.
ExitStatus Tell(const CommandEnd& end,
                const std::function<void(const std::string&)>& writeErrorLine);

}  // namespace zelmo
