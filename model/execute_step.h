#pragma once

namespace zelmo {

class LogConsole;
struct ProcessModel;
struct ProcessStep;
struct Stack;

/// Runs one step on the model: writes "Executing <description> ..." to `console` and rewrites the
/// layers and the cover map. Layers that have nothing left to show leave the stack in the end
/// (SettleStack). Nothing but exhausted memory can fail.
void ExecuteStep(ProcessModel& model, const ProcessStep& step, LogConsole* console);

/// The same on a stack beside the model's own, which is not looked at: so that several stacks can
/// go through the steps of one model at the same time.
void ExecuteStep(const ProcessModel& model, Stack& stack, const ProcessStep& step,
                 LogConsole* console);

}  // namespace zelmo
