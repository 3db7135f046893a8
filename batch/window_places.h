#pragma once

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

/// What numbers of a step are told under: its number and description.
StepName NameOf(const ProcessStep& step, std::size_t index);

}  // namespace zelmo
