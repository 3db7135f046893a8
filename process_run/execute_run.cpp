#include "process_run/execute_run.h"

#include <fmt/format.h>

#include <string>

#include "base/clock.h"
#include "base/log_console.h"
#include "model/execute_step.h"
#include "model/process.h"
#include "process_run/result_files.h"

namespace zelmo {

void ReportRunStart(LogConsole* console) {
    console->Write(std::wstring());
    console->Write(std::wstring(L"EXECUTING PROCESS STEPS"));
}

void ExecuteStepWithReport(ProcessModel& model, const ProcessStep& step, LogConsole* console) {
    const std::int32_t start = ElapsedMilliseconds();
    ExecuteStep(model, step, console);
    WriteResult(model, step.result);
    ReportStepEnd(start, console);
}

void ReportStepEnd(std::int32_t startClock, LogConsole* console) {
    const double seconds = static_cast<double>(ElapsedMilliseconds() - startClock) / 1000.0;
    console->Write(fmt::format("Completed in {:.3f} s", seconds));
}

void RepeatStep(ProcessModel& model, const ProcessStep& step) {
    ExecuteStep(model, step, nullptr);
}

void ReportRunEnd(std::int32_t startClock, LogConsole* console) {
    const float seconds = static_cast<float>(ElapsedMilliseconds() - startClock) / 1000.0f;
    console->Write(fmt::format("All process steps completed in {:.3f} sec", seconds));
    console->Write(std::wstring());
    console->Write(std::wstring(L"Use left and right arrows to browse through the process steps"));
}

}  // namespace zelmo
