#pragma once

#include <cstdio>

namespace zelmo {

struct ProcessModel;

/// The stack data cell by cell, each number as the format library has it, on one thread.
void WriteStackDataPlain(const ProcessModel& model, std::FILE* file);

}  // namespace zelmo
