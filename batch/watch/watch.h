#pragma once

#include <functional>

#include "command_line/exit_status.h"

namespace zelmo {

struct BatchOptions;
struct Reporting;

/// What there is to do again.
struct WatchedChange {
    bool layout = false;  ///< it was saved, too
    /// Whether something was saved since.
    std::function<bool()> superseded;
};

/// How doing it again came out.
struct WatchedOutcome {
    Outcome outcome;
    bool isHopeless = false;  ///< whatever will be saved
};

/// Runs `run` at once, and again whenever the process file or the layout is saved, or what it was
/// doing has been superseded. What fails is told, and the next save waited for. Returns what is
/// hopeless.
Outcome Watch(const BatchOptions& options, Reporting& reporting,
              const std::function<WatchedOutcome(const WatchedChange&)>& run);

}  // namespace zelmo
