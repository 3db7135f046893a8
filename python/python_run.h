#pragma once

#include <filesystem>
#include <memory>
#include <optional>

#include "python/run_plan.h"
#include "python/step_task.h"

namespace zelmo {

/// A run as Python holds it. It is read and changed under the interpreter lock alone; what takes
/// long works on copies of the position, which cost nothing.
struct PythonRun {
    std::shared_ptr<const RunPlan> plan;
    RunPosition position;
    std::optional<std::filesystem::path> dumps;  ///< none: no files of dumps are written
    bool stopIsAsked = false;                    ///< of the step that is executed
    /// The process in which a step of this run is executed; 0: none is. In a forked child that is
    /// another one, and nothing is.
    int executingProcess = 0;

    explicit PythonRun(std::shared_ptr<const RunPlan> known)
        : plan(std::move(known)), position(*plan) {}

    const ProcessModel& Model() const { return plan->model; }

    /// Throws std::runtime_error where a step is executed.
    void RefuseIfBusy() const;
};

}  // namespace zelmo
