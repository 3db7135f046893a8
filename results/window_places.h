#pragma once

#include <array>
#include <cstddef>
#include <string>

#include "model/grid/places.h"
#include "results/probe.h"

namespace zelmo {

struct ProcessSettings;
struct ProcessStep;

/// Why nothing can be told of a place, which is given in the unit of the process file: it lies
/// outside the window. Empty where it does not.
std::string WhyOutside(const ProcessSettings& settings, const Place& given);

/// What a cut is called whose ends are given in the unit of the process file, x and y of each; the
/// first one is number 1.
std::string CutName(std::size_t number, const std::array<double, 4>& ends,
                    const ProcessSettings& settings);

/// What numbers of a step are told under: its number and description.
StepName NameOf(const ProcessStep& step, std::size_t index);

}  // namespace zelmo
