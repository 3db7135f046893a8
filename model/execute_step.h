#pragma once

namespace zelmo {

class LogConsole;
struct ProcessModel;
struct ProcessStep;

/// Runs one step on the model: writes "Executing <description> ..." to `console` and rewrites the
/// layers and the cover map. Nothing but exhausted memory can fail. The GL context of the model's
/// `graphics`, if it has one, must be current.
void ExecuteStep(ProcessModel& model, const ProcessStep& step, LogConsole* console);

}  // namespace zelmo
