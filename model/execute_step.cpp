#include "model/execute_step.h"

#include <fmt/format.h>

#include <string>

#include "base/log_console.h"
#include "model/process_model.h"
#include "model/steps/steps.h"

namespace zelmo {

namespace {

void Say(LogConsole* console, const std::string& text) {
    if (console != nullptr) {
        console->Write(text);
    }
}

void Polish(Stack& stack, const Grid& grid, const ProcessStep& step, LogConsole* console) {
    if (!ExecutePolish(stack, grid, step)) {
        Say(console,
            fmt::format("Note: {} changed nothing: its stop holds no square of 3 by 3 grid cells.",
                        step.description));
    }
}

void Execute(const ProcessModel& model, Stack& stack, const ProcessStep& step,
             LogConsole* console) {
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
        case StepKind::Polish:
            return Polish(stack, grid, step, console);
        case StepKind::Implant:
            return ExecuteImplant(stack, grid, step);
    }
}

}  // namespace

void ExecuteStep(ProcessModel& model, const ProcessStep& step, LogConsole* console) {
    ExecuteStep(model, model.stack, step, console);
}

void ExecuteStep(const ProcessModel& model, Stack& stack, const ProcessStep& step,
                 LogConsole* console) {
    if (!step.description.empty()) {
        Say(console, fmt::format("Executing {} ...", step.description));
    }
    if (step.kind != StepKind::Dump) {
        stack.coverMap.Unshare();  // before a layer changes, since memory may end here
    }
    Execute(model, stack, step, console);
    SettleStack(stack, model.grid);
}

}  // namespace zelmo
