#pragma once

#include <span>
#include <string>

namespace zelmo {

struct ProcessStep;

/// A line of UTF-8 for each step: its number, its description, and its line of the process file.
std::string StepList(std::span<const ProcessStep> steps);

}  // namespace zelmo
