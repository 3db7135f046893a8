#pragma once

#include <string>

#include "batch/consoles.h"
#include "batch/progress.h"
#include "command_line/diagnostics.h"

namespace zelmo {

struct Note;

/// Where a run reports to.
struct Reporting {
    /// `quiet` leaves errors alone.
    explicit Reporting(bool quiet, DiagnosticStyle diagnostics = DiagnosticStyle::Plain);

    void Tell(const Note& note);
    void Error(const std::string& message);
    /// What the user should know of a file, though it does as it is.
    void Warning(const FileFault& fault, const std::string& message);
    /// Why something failed, in one line or, in gcc's style, in one for each fault.
    void Failure(const Outcome& outcome);

    const DiagnosticStyle style;
    const int columns;  ///< of the terminal that is told how the run goes; 0: none is
    Progress progress;
    OutputConsole console;
};

}  // namespace zelmo
