#pragma once

#include <span>
#include <string>

#include "process_run/view_choice.h"

namespace zelmo {

struct GdsDatabase;
struct ProcessStep;

/// A window, or the line that says why there is none.
struct WindowFit {
    GivenWindow window;
    std::string failure;  ///< as the console tells it; empty if there is a window
};

/// The box around what a cell and all below it draw on the masks of the steps, with the margin
/// around it. One that would be higher than wide is as wide as high, with the drawing in its
/// middle. Throws std::out_of_range("invalid vector subscript") if an array has no points.
WindowFit FitWindow(const GdsDatabase& database, const std::string& cellName,
                    std::span<const ProcessStep> steps, FittedWindow choice);

}  // namespace zelmo
