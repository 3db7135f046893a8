#pragma once

#include <cstdint>

namespace zelmo {

class LogConsole;
struct ProcessModel;
struct ProcessStep;

// The run of a prepared model, with the lines that it leaves on the console. Whoever drives it
// calls the first, then the second for each step in its order, then the third.

/// Writes the headline of a run.
void ReportRunStart(LogConsole* console);

/// Executes a step, with the file that it asks for, and reports its time.
void ExecuteStepWithReport(ProcessModel& model, const ProcessStep& step, LogConsole* console);

/// Writes the end of a run that started at `startClock` milliseconds (ElapsedMilliseconds).
void ReportRunEnd(std::int32_t startClock, LogConsole* console);

}  // namespace zelmo
