#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

#include "model/process_model.h"

namespace zelmo {

/// The model of an example ("cmos_inverter", "mems_release" or "array"), ready to run, with `cells`
/// in place of its number of columns. The benchmarks run in the build folder, where the examples
/// lie. Throws when it cannot be prepared.
std::unique_ptr<ProcessModel> PrepareExample(std::string_view name, std::int32_t cells);

/// Executes the steps up to but without step `end`, or all, and says nothing.
void RunSteps(ProcessModel& model, std::size_t end = SIZE_MAX);

/// The CMOS example at 1000 columns after its last step, run once.
const ProcessModel& FinishedExample();

}  // namespace zelmo
