#include "python/step_task.h"

#include <cerrno>
#include <cstdint>
#include <system_error>
#include <thread>
#include <utility>

#include "base/clock.h"
#include "base/log_console.h"
#include "base/stop_scope.h"
#include "base/text.h"
#include "model/execute_step.h"
#include "process_run/execute_run.h"
#include "process_run/result_files.h"
#include "python/run_plan.h"
#include "results/readable_text.h"

namespace zelmo {

namespace {

/// Keeps the lines of a step.
class LineKeeper : public LogConsole {
public:
    std::vector<std::string> Take() { return std::move(lines_); }

protected:
    void AppendLine(std::wstring line) override {
        lines_.push_back(ReadableText(Utf8FromWide(line)));
    }

private:
    std::vector<std::string> lines_;
};

void WriteDump(const ProcessModel& view, const ProcessStep& step,
               const std::filesystem::path& folder) {
    if (!WriteResultTo(folder, view, step.result)) {
        throw std::filesystem::filesystem_error("the file of a dump cannot be written", folder,
                                                std::error_code(errno, std::generic_category()));
    }
}

/// A model to look at for the notes of a step, which ask for the polygons of its mask.
ProcessModel ViewForNotes(const RunPlan& plan, const Stack& stack, const ProcessStep& step) {
    ProcessModel view = plan.View(stack);
    if (step.kind == StepKind::Photo) {
        view.polygons = plan.model.polygons;
    }
    return view;
}

}  // namespace

RunPosition::RunPosition(const RunPlan& plan)
    : stack(CopyStack(plan.model.stack)), stepNotes(plan.inputs.processName) {}

RunPosition::RunPosition(const RunPosition& other)
    : stack(CopyStack(other.stack)), done(other.done), stepNotes(other.stepNotes) {}

RunPosition& RunPosition::operator=(const RunPosition& other) {
    return *this = RunPosition(other);
}

RunPosition DoNextStep(const RunPlan& plan, RunPosition position,
                       const std::optional<std::filesystem::path>& dumps) {
    const std::size_t index = position.done.size();
    const ProcessStep& step = plan.model.steps.at(index);
    LineKeeper console;
    ProcessModel view = ViewForNotes(plan, position.stack, step);
    position.stepNotes.Before(view, index);
    view.stack = {};  // what the step rewrites shall be its own
    const std::int32_t startClock = ElapsedMilliseconds();
    const auto start = std::chrono::steady_clock::now();
    ExecuteStep(plan.model, position.stack, step, &console);
    EndIfStopped();
    view.stack = CopyStack(position.stack);
    if (!step.result.empty() && dumps) {
        WriteDump(view, step, *dumps);
    }
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
    ReportStepEnd(startClock, &console);
    position.done.push_back({taken.count(), position.stepNotes.After(view, index), console.Take()});
    return position;
}

std::shared_ptr<StepTask> StepTask::Start(std::shared_ptr<const RunPlan> plan,
                                          const RunPosition& position,
                                          std::optional<std::filesystem::path> dumps) {
    auto task = std::make_shared<StepTask>();
    std::thread([task, plan = std::move(plan), position = RunPosition(position),
                 dumps = std::move(dumps)]() mutable {
        task->Run(*plan, std::move(position), dumps);
    }).detach();
    return task;
}

void StepTask::Run(const RunPlan& plan, RunPosition position,
                   const std::optional<std::filesystem::path>& dumps) {
    std::optional<RunPosition> result;
    std::exception_ptr problem;
    try {
        const StopScope scope(&stop_);
        result.emplace(DoNextStep(plan, std::move(position), dumps));
    } catch (...) {
        problem = std::current_exception();
    }
    const std::lock_guard lock(mutex_);
    result_ = std::move(result);
    problem_ = problem;
    hasEnded_ = true;
    ended_.notify_all();
}

bool StepTask::WaitFor(std::chrono::milliseconds time) {
    std::unique_lock lock(mutex_);
    return ended_.wait_for(lock, time, [&] { return hasEnded_; });
}

RunPosition StepTask::Take() {
    const std::lock_guard lock(mutex_);
    if (problem_) {
        std::rethrow_exception(problem_);
    }
    return std::move(result_.value());
}

}  // namespace zelmo
