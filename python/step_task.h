#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <exception>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "model/stack.h"
#include "results/notes/note.h"
#include "results/notes/step_notes.h"

namespace zelmo {

struct RunPlan;

/// What is known of a step that was executed.
struct DoneStep {
    double seconds = 0.0;
    std::vector<Note> notes;
    std::vector<std::string> console;  ///< its lines
};

/// Where a run stands: behind as many steps as are done. A copy shares the surfaces.
struct RunPosition {
    Stack stack;
    std::vector<DoneStep> done;
    StepNotes stepNotes;

    explicit RunPosition(const RunPlan& plan);
    RunPosition(const RunPosition& other);
    RunPosition& operator=(const RunPosition& other);
    RunPosition(RunPosition&&) = default;
    RunPosition& operator=(RunPosition&&) = default;
    ~RunPosition() = default;
};

/// Executes the next step of a run from a position. The file of a `dump` goes into `dumps`, if
/// there is one; throws std::filesystem::filesystem_error where it cannot be written. Throws what
/// ExecuteStep throws, and Stopped.
RunPosition DoNextStep(const RunPlan& plan, RunPosition position,
                       const std::optional<std::filesystem::path>& dumps);

/// A step that is executed on a thread of its own, so that whoever waits for it can go away before
/// it has ended.
class StepTask {
public:
    /// Throws std::system_error where there is no thread to be had.
    static std::shared_ptr<StepTask> Start(std::shared_ptr<const RunPlan> plan,
                                           const RunPosition& position,
                                           std::optional<std::filesystem::path> dumps);

    /// Waits so long at most; whether the step has ended.
    bool WaitFor(std::chrono::milliseconds time);

    /// Tells the step to end before its end. It is to be waited for all the same before the
    /// program ends.
    void Stop() { stop_ = true; }

    /// What came out, once it has ended. Throws what the step threw.
    RunPosition Take();

private:
    void Run(const RunPlan& plan, RunPosition position,
             const std::optional<std::filesystem::path>& dumps);

    std::atomic<bool> stop_{false};
    std::mutex mutex_;
    std::condition_variable ended_;
    bool hasEnded_ = false;
    std::optional<RunPosition> result_;
    std::exception_ptr problem_;
};

}  // namespace zelmo
