#include "batch/reporting.h"

#include "command_line/platform.h"
#include "command_line/standard_streams.h"

namespace zelmo {

Reporting::Reporting(bool quiet)
    : columns(quiet ? 0 : TerminalColumns()), progress(columns), console(progress, quiet) {}

void Reporting::Tell(const std::string& line) {
    progress.Interrupt([&] { WriteToError(line); });
}

void Reporting::Error(const std::string& message) {
    progress.Interrupt([&] { WriteErrorLine(message); });
}

}  // namespace zelmo
