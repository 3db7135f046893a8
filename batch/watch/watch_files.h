#pragma once

#include <atomic>

#include "command_line/exit_status.h"

namespace zelmo {

class NoteTeller;
class UnfinishedFiles;
struct BatchOptions;
struct Reporting;

/// Runs the files again and again, as they are saved, until the user ends the program; `status` is
/// the present one then. Returns what no save can mend.
Outcome WatchFiles(const BatchOptions& options, Reporting& reporting, NoteTeller& notes,
                   UnfinishedFiles& files, std::atomic<ExitStatus>& status);

}  // namespace zelmo
