#include "model/execute_step.h"

#include <fmt/format.h>

#include "base/log_console.h"
#include "model/process_model.h"
#include "model/steps/steps.h"

namespace zelmo {

void ExecuteStep(ProcessModel& model, const ProcessStep& step, LogConsole* console) {
    if (!step.description.empty() && console != nullptr) {
        console->Write(fmt::format("Executing {} ...", step.description));
    }
    switch (step.kind) {
        case StepCoating:
            return ExecuteCoating(model, step);
        case StepDeposition:
            return ExecuteDeposition(model, step);
        case StepSubstrate:
            return ExecuteSubstrate(model, step);
        case StepDump:
            return ExecuteDump(model, step);
        case StepPhoto:
            return ExecutePhoto(model, step);
        case StepEtch:
            return ExecuteEtch(model, step);
        case StepStrip:
            return ExecuteStrip(model, step);
        case StepRelease:
            return ExecuteRelease(model, step);
        default:
            return;
    }
}

}  // namespace zelmo
