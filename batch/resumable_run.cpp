#include "batch/resumable_run.h"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <new>
#include <string>
#include <utility>

#include "base/clock.h"
#include "base/physical_memory.h"
#include "base/text.h"
#include "batch/files/unfinished_files.h"
#include "batch/options.h"
#include "batch/reporting.h"
#include "command_line/reasons.h"
#include "process_run/common_steps.h"
#include "process_run/execute_run.h"
#include "process_run/result_files.h"
#include "process_run/step_choice.h"

namespace zelmo {

namespace {

constexpr std::uint64_t bytesPerMebibyte = 1 << 20;
/// Of the machine's memory, for stacks, unless it was said otherwise.
constexpr std::uint64_t usualShare = 4;

std::uint64_t MemoryLimit(const BatchOptions& options) {
    return options.memoryMebibytes ? *options.memoryMebibytes * bytesPerMebibyte
                                   : PhysicalMemory() / usualShare;
}

/// How many of the first steps are chosen or not chosen in both.
std::size_t CommonChoice(const std::vector<bool>& before, const std::vector<bool>& now) {
    const std::size_t most = std::min(before.size(), now.size());
    std::size_t common = 0;
    while (common < most && before[common] == now[common]) {
        ++common;
    }
    return common;
}

}  // namespace

ResumableRun::ResumableRun(const BatchOptions& options,
                           std::vector<std::unique_ptr<StepListener>> listeners,
                           Reporting& reporting, UnfinishedFiles& files)
    : process_(TextOf(options.process)),
      choice_(options.steps),
      listeners_(std::move(listeners)),
      reporting_(reporting),
      files_(files) {
    if (options.watch || (options.pictures && options.sameSize)) {
        history_.emplace(MemoryLimit(options));
    }
}

Outcome ResumableRun::Run(std::unique_ptr<ProcessModel> model,
                          const std::function<bool()>& superseded) {
    Adopt(std::move(model));
    if (Outcome outcome = BeginListeners(); outcome.Failed()) {
        return outcome;
    }
    try {
        return RunNewSteps(superseded);
    } catch (const std::bad_alloc&) {
        Abandon();
        return {ExitStatus::Other,
                fmt::format("the process file {} was not run to its end: there is not enough "
                            "memory",
                            process_)};
    } catch (...) {
        Abandon();
        throw;
    }
}

const ProcessModel* ResumableRun::FinishedModel() const {
    return model_ != nullptr && taken_ == model_->steps.size() ? model_.get() : nullptr;
}

Outcome ResumableRun::RunNewSteps(const std::function<bool()>& superseded) {
    ReportRunStart(&reporting_.console);
    const std::int32_t start = ElapsedMilliseconds();
    for (std::size_t index = taken_; index < model_->steps.size(); ++index) {
        if (superseded()) {
            return {};
        }
        if (Outcome outcome = TakeStep(index); outcome.Failed()) {
            FinishListeners(false);
            return outcome;
        }
        taken_ = index + 1;
    }
    bool isSuperseded = false;
    const auto stops = [&] { return isSuperseded = superseded(); };
    if (Outcome outcome = ReviewAll(stops); outcome.Failed()) {
        FinishListeners(false);
        return outcome;
    }
    if (isSuperseded) {
        return {};
    }
    RenewDump();
    Outcome outcome = FinishListeners(true);
    reporting_.progress.End();
    ReportRunEnd(start, &reporting_.console);
    return outcome;
}

/// Takes over the model, and keeps of what was done what holds for it.
void ResumableRun::Adopt(std::unique_ptr<ProcessModel> model) {
    const std::size_t common = model_ != nullptr ? CommonSteps(*model_, *model) : 0;
    const bool sameView = model_ != nullptr && HaveSameView(*model_, *model);
    executed_ = std::min(executed_, common);
    std::vector<bool> chosen = ChooseSteps(choice_, model->steps).chosen;
    taken_ = sameView ? std::min({taken_, executed_, CommonChoice(chosen_, chosen)}) : 0;
    chosen_ = std::move(chosen);
    if (history_) {
        history_->ForgetFrom(executed_);
    }
    record_.seconds.resize(executed_);
    if (dumped_ >= common) {
        dumped_.reset();  // what is on the disk belongs to a run that is no more
    }
    model_ = std::move(model);
    position_.reset();
}

Outcome ResumableRun::BeginListeners() {
    const UnfinishedFiles::Writing preparing(files_);  // they may try whether files can be made
    for (const auto& listener : listeners_) {
        Outcome outcome = begun_ ? listener->Restart(*model_, taken_) : listener->Begin(*model_);
        if (outcome.Failed()) {
            return outcome;
        }
    }
    begun_ = true;
    return {};
}

void ResumableRun::TellProgress(std::size_t index) {
    reporting_.progress.BeginStep(index + 1, model_->steps.size(),
                                  Utf8FromWide(WidenBytes(model_->steps[index].description)));
}

/// Lets the listeners take a step, which is executed if its stack is not known.
Outcome ResumableRun::TakeStep(std::size_t index) {
    TellProgress(index);
    if (index > 0) {
        GoTo(index - 1);
    }
    for (const auto& listener : listeners_) {
        listener->BeforeStep(*model_, index);
    }
    if (index < executed_) {
        GoTo(index);
    } else {
        ExecuteStep(index);
    }
    for (const auto& listener : listeners_) {
        if (Outcome outcome = listener->AfterStep(*model_, index, record_); outcome.Failed()) {
            return outcome;
        }
    }
    return {};
}

void ResumableRun::ExecuteStep(std::size_t index) {
    const ProcessStep& step = model_->steps[index];
    const auto start = std::chrono::steady_clock::now();
    std::optional<UnfinishedFiles::Writing> result;
    if (!step.result.empty()) {
        result.emplace(files_);
    }
    position_.reset();  // should it end in the middle
    ExecuteStepWithReport(*model_, step, &reporting_.console);
    position_ = index;
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
    record_.seconds.push_back({.step = taken.count()});
    if (history_) {
        history_->Keep(index, model_->stack);
    }
    executed_ = index + 1;
    if (!step.result.empty()) {
        dumped_ = index;
    }
}

/// Puts the model's stack to where it was after a step that was executed before. Steps behind the
/// last one that is kept are done again, for nobody to see.
void ResumableRun::GoTo(std::size_t index) {
    if (position_ == index) {
        return;
    }
    const std::size_t kept = history_->LastUpTo(index).value();  // the first is always kept
    model_->stack = CopyStack(*history_->Find(kept));
    for (std::size_t next = kept + 1; next <= index; ++next) {
        RepeatStep(*model_, model_->steps[next]);
    }
    position_ = index;
}

/// Lets the listeners see steps once more.
Outcome ResumableRun::ReviewAll(const std::function<bool()>& superseded) {
    for (const auto& listener : listeners_) {
        if (Outcome outcome = ReviewSteps(*listener, superseded); outcome.Failed()) {
            return outcome;
        }
    }
    return {};
}

Outcome ResumableRun::ReviewSteps(StepListener& listener, const std::function<bool()>& superseded) {
    const std::vector<std::size_t> steps = listener.StepsToReview();
    for (const std::size_t index : steps) {
        if (superseded()) {
            break;
        }
        TellProgress(index);
        GoTo(index);
        if (Outcome outcome = listener.Review(*model_, index, record_); outcome.Failed()) {
            return outcome;
        }
    }
    if (!steps.empty()) {
        GoTo(model_->steps.size() - 1);
    }
    return {};
}

/// Sees that the file of a dump is that of the last one of this run.
void ResumableRun::RenewDump() {
    for (std::size_t index = model_->steps.size(); index-- > 0;) {
        const ProcessStep& step = model_->steps[index];
        if (step.result.empty()) {
            continue;
        }
        if (dumped_ != index) {
            GoTo(index);
            const UnfinishedFiles::Writing result(files_);
            WriteResult(*model_, step.result);
            dumped_ = index;
        }
        return;
    }
}

Outcome ResumableRun::FinishListeners(bool complete) {
    const UnfinishedFiles::Writing results(files_);
    Outcome first;
    for (const auto& listener : listeners_) {
        Outcome outcome = listener->Finish(record_, complete);
        if (!first.Failed()) {
            first = std::move(outcome);
        }
    }
    return first;
}

/// Ends a run that cannot go on, and forgets what was done.
void ResumableRun::Abandon() {
    FinishListeners(false);  // what they have to tell comes first
    model_.reset();
    if (history_) {
        history_->ForgetFrom(0);
    }
    record_ = {};
    position_.reset();
    dumped_.reset();
    executed_ = 0;
    taken_ = 0;
}

}  // namespace zelmo
