#pragma once

#include <span>
#include <string>
#include <vector>

#include "batch/run_record.h"

namespace zelmo {

struct ProcessStep;

/// A short table of which steps and pictures took the time of a run, the longest first, then the
/// others together and all: its lines in UTF-8, cut so that they fit a terminal of this many
/// columns. `seconds` are those of the first steps. Nothing where there are no steps.
std::vector<std::string> TimeTable(std::span<const ProcessStep> steps,
                                   std::span<const StepSeconds> seconds, int columns);

}  // namespace zelmo
