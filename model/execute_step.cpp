#include "model/execute_step.h"

#include <fmt/format.h>

#include "base/log_console.h"
#include "model/process_model.h"
#include "model/stack.h"
#include "model/steps/steps.h"

namespace zelmo {

namespace {

void Execute(ProcessModel& model, const ProcessStep& step) {
    switch (step.kind) {
        case StepKind::Coating:
            return ExecuteCoating(model, step);
        case StepKind::Deposition:
            return ExecuteDeposition(model, step);
        case StepKind::Substrate:
            return ExecuteSubstrate(model, step);
        case StepKind::Dump:
            return ExecuteDump(model, step);
        case StepKind::Photo:
            return ExecutePhoto(model, step);
        case StepKind::Etch:
            return ExecuteEtch(model, step);
        case StepKind::Strip:
            return ExecuteStrip(model, step);
        case StepKind::Release:
            return ExecuteRelease(model, step);
    }
}

}  // namespace

void ExecuteStep(ProcessModel& model, const ProcessStep& step, LogConsole* console) {
    if (!step.description.empty() && console != nullptr) {
        console->Write(fmt::format("Executing {} ...", step.description));
    }
    Execute(model, step);
    SettleStack(model.stack, model.grid);
}

}  // namespace zelmo
