#pragma once

#include <vector>

#include "results/notes/note.h"

namespace zelmo {

/// Seconds that a step took, and its picture; 0 for what was not made.
struct StepSeconds {
    double step = 0.0;
    double picture = 0.0;
};

/// What is known of a run beside its stack.
struct RunRecord {
    std::vector<StepSeconds> seconds;  ///< of each step so far
    std::vector<Note> notes;           ///< at its end, those that are silenced left out
};

}  // namespace zelmo
