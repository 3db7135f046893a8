#pragma once

#include <cstddef>

namespace zelmo {

struct ProcessModel;

// What a run has in common with an earlier one. Models are looked at as they are before their first
// step; stacks do not matter.

/// How many of the first steps give the same stacks in both runs: none if they look at another cell
/// or window or on another grid, else up to the first step that differs, be it by its mask's
/// polygons alone.
std::size_t CommonSteps(const ProcessModel& before, const ProcessModel& now);

/// Whether equal stacks look the same and give the same numbers.
bool HaveSameView(const ProcessModel& before, const ProcessModel& now);

}  // namespace zelmo
