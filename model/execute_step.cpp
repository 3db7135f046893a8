#include "model/execute_step.h"

#include <fmt/format.h>

#include "base/log_console.h"
#include "model/process_model.h"
#include "model/steps/steps.h"

namespace zelmo {

namespace {

void Execute(ProcessModel& model, const ProcessStep& step) {
    Stack& stack = model.stack;
    const Grid& grid = model.grid;
    switch (step.kind) {
        case StepKind::Coating:
            return ExecuteCoating(stack, grid, step);
        case StepKind::Deposition:
            return ExecuteDeposition(stack, grid, step);
        case StepKind::Substrate:
            return ExecuteSubstrate(stack, grid, model.settings.windowWidth, step);
        case StepKind::Dump:
            return;  // the stack stays; who runs the steps writes the file
        case StepKind::Photo:
            return ExecutePhoto(stack, grid, model.polygons, step);
        case StepKind::Etch:
            return ExecuteEtch(stack, grid, step);
        case StepKind::Strip:
            return ExecuteStrip(stack, grid, step);
        case StepKind::Release:
            return ExecuteRelease(stack, grid, step);
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
