#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "command_line/exit_status.h"

namespace zelmo {

/// How a program writes what is to be mended in a file.
enum class DiagnosticStyle {
    Plain,
    Gcc,  ///< "flow.txt:12: error: text", which editors can jump to
};

/// Reads "plain" or "gcc". The reason why not, or nothing if all is well.
std::string TakeDiagnosticStyle(std::string_view text, DiagnosticStyle& style);

/// The options' value and help, which programs share.
inline constexpr const char* diagnosticForm = "gcc|plain";
inline constexpr const char* diagnosticHelp =
    "How errors are written: plain (default), or gcc: a line for each, FILE:LINE: error: TEXT, as "
    "editors take them from compilers";

/// "flow.txt:12: error: text", without a line where it is 0. `severity` is "error", "warning" or
/// "note"; all in UTF-8.
std::string GccLine(const FileFault& fault, std::string_view severity);

/// The lines that tell why something failed: in the plain style its message behind the program's
/// name, in gcc's one for each fault, or for the program as a whole where no file is to blame.
std::vector<std::string> FailureLines(const Outcome& outcome, std::string_view program,
                                      DiagnosticStyle style);

}  // namespace zelmo
