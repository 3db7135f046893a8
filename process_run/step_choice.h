#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace zelmo {

enum class StepKind : std::int32_t;
struct ProcessStep;

/// The command of process files that makes a step of this kind; "substrate" for the first.
std::string_view CommandWord(StepKind kind);

/// The steps that a list chooses, or why there are none.
struct StepChoice {
    std::vector<bool> chosen;  ///< for each step; of the steps' size unless there is a failure
    std::string failure;       ///< one line of UTF-8 that names the way out; empty if all is well
};

/// Reads a list of steps with commas in between, blanks around them not counting. Each item is the
/// number of a step (the first one, the substrate's, is 1), a range of numbers such as "3-7",
/// "first" or "last", which can also end a range, or a word that chooses all steps which it fits:
/// the command that makes them ("photo", "etch", "substrate" for the first), what their `-name`
/// says, or their description as it stands in the names of pictures. An empty list chooses all.
StepChoice ChooseSteps(std::string_view list, std::span<const ProcessStep> steps);

}  // namespace zelmo
