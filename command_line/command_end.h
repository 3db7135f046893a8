#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "command_line/exit_status.h"

namespace CLI {
class App;
}  // namespace CLI

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

/// Gives a parser what all programs have: the program's version, and a text below the options.
void AddUsualOptions(CLI::App& app, std::string_view footer);

/// Reads the arguments behind the program's name, all in UTF-8 (on Linux, the bytes as they are).
/// How the program ends, if there is nothing to run.
std::optional<CommandEnd> ParseArguments(CLI::App& app, const std::vector<std::string>& arguments);

/// Arguments that are refused for a reason.
CommandEnd WrongUsage(const std::string& reason);

/// Ends the program so; `writeErrorLine` knows its name.
ExitStatus Tell(const CommandEnd& end,
                const std::function<void(const std::string&)>& writeErrorLine);

}  // namespace zelmo
