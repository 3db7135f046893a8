#pragma once

#include <string>

#include "batch/consoles.h"
#include "batch/progress.h"

namespace zelmo {

/// Where a run reports to.
struct Reporting {
    /// `quiet` leaves errors alone.
    explicit Reporting(bool quiet);

    void Tell(const std::string& line);
    void Error(const std::string& message);

    const int columns;  ///< of the terminal that is told how the run goes; 0: none is
    Progress progress;
    OutputConsole console;
};

}  // namespace zelmo
