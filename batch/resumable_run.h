#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "batch/listeners/step_listener.h"
#include "batch/run_record.h"
#include "command_line/exit_status.h"
#include "model/process_model.h"
#include "process_run/stack_history.h"

namespace zelmo {

struct BatchOptions;
struct Reporting;
class UnfinishedFiles;

/// A run, which may be done again and again as its inputs change. Each time it does what is new:
/// steps before the first that differs are not executed again, and what was taken of them holds.
class ResumableRun {
public:
    /// The options say which steps are of interest, whether stacks are kept, as the run will be
    /// done again or looked at twice, and how much memory they may take. The listeners are told of
    /// the first run with Begin, of all others with Restart.
    ResumableRun(const BatchOptions& options, std::vector<std::unique_ptr<StepListener>> listeners,
                 Reporting& reporting, UnfinishedFiles& files);

    /// Runs a model, which is as it was prepared, to its end, or until `superseded` answers true
    /// between two steps. What was done by then counts for the next run; nothing does where memory
    /// runs out or something is thrown.
    Outcome Run(std::unique_ptr<ProcessModel> model, const std::function<bool()>& superseded);

    /// Whether the listeners got ready.
    bool HasBegun() const { return begun_; }

    /// The model, whose steps the listeners have taken all, and what is known of its run; null
    /// where a step failed or the run was superseded.
    const ProcessModel* FinishedModel() const;
    const RunRecord& Record() const { return record_; }

private:
    void Adopt(std::unique_ptr<ProcessModel> model);
    Outcome RunNewSteps(const std::function<bool()>& superseded);
    Outcome BeginListeners();
    void TellProgress(std::size_t index);
    Outcome TakeStep(std::size_t index);
    void ExecuteStep(std::size_t index);
    void GoTo(std::size_t index);
    Outcome ReviewSteps(StepListener& listener, const std::function<bool()>& superseded);
    Outcome ReviewAll(const std::function<bool()>& superseded);
    void RenewDump();
    Outcome FinishListeners(bool complete);
    void Abandon();

    std::string process_;       ///< the file, as the user names it
    std::string choice_;        ///< of steps, as it was asked for
    std::vector<bool> chosen_;  ///< of the model's steps
    std::optional<StackHistory> history_;
    std::vector<std::unique_ptr<StepListener>> listeners_;
    Reporting& reporting_;
    UnfinishedFiles& files_;
    std::unique_ptr<ProcessModel> model_;
    std::optional<std::size_t> position_;  ///< the step after which the model's stack is; none: new
    std::size_t executed_ = 0;             ///< steps whose stacks are known
    std::size_t taken_ = 0;                ///< steps that the listeners have taken
    bool begun_ = false;                   ///< the listeners
    std::optional<std::size_t> dumped_;    ///< the step whose result was written last
    RunRecord record_;
};

}  // namespace zelmo
