#pragma once

namespace zelmo {

class LogConsole;
struct ProcessModel;
struct ProcessStep;

/// Runs one step on the model: writes "Executing <description> ..." to `console` and rewrites the
/// layers and the cover map. Layers that have nothing left to show leave the stack in the end
/// (SettleStack). Nothing but exhausted memory can fail.
void ExecuteStep(ProcessModel& model, const ProcessStep& step, LogConsole* console);

}  // namespace zelmo
