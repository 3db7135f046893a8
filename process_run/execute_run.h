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

/// Writes the time of a step that started at `startClock` milliseconds (ElapsedMilliseconds).
void ReportStepEnd(std::int32_t startClock, LogConsole* console);

/// Executes a step that was executed before, to have its stack again: without a report and without
/// the file that it asks for.
void RepeatStep(ProcessModel& model, const ProcessStep& step);

/// Writes the end of a run that started at `startClock` milliseconds (ElapsedMilliseconds).
void ReportRunEnd(std::int32_t startClock, LogConsole* console);

}  // namespace zelmo
