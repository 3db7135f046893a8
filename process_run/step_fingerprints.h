#pragma once

#include <array>
#include <cstdint>
#include <vector>

namespace zelmo {

struct ProcessModel;

/// Stands for all that a stack after a step comes from.
using Fingerprint = std::array<std::uint8_t, 32>;

/// One for each step. Those of two runs are equal up to a step exactly where CommonSteps
/// (process_run/common_steps.h) tells that they have the same stacks up to it. They are the same in
/// every process and on every machine, as long as the program is of one version. The model is
/// looked at as it is before its first step; its stack does not matter.
std::vector<Fingerprint> StepFingerprints(const ProcessModel& model);

}  // namespace zelmo
