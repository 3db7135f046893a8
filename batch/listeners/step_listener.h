#pragma once

#include <cstddef>
#include <vector>

#include "command_line/exit_status.h"

namespace zelmo {

struct ProcessModel;
struct RunRecord;

/// Whoever takes something of the steps of a run: pictures, numbers, notes. The run calls its
/// listeners in their order.
class StepListener {
public:
    virtual ~StepListener() = default;

    /// Gets ready, before anything is executed. Fails where the run would be of no use.
    virtual Outcome Begin(const ProcessModel& model) = 0;

    /// The run begins anew, with a model that may be another, at the step with this index: what was
    /// taken of the steps before it still holds. What follows it is taken again.
    virtual Outcome Restart(const ProcessModel& model, std::size_t /*first*/) {
        return Begin(model);
    }

    /// Sees the model before the step with this index.
    virtual void BeforeStep(const ProcessModel& /*model*/, std::size_t /*index*/) {}

    /// Takes what it wants of the finished step with this index. `record` has the times so far and
    /// takes what there is to tell. Fails where going on would be of no use.
    virtual Outcome AfterStep(const ProcessModel& model, std::size_t index, RunRecord& record) = 0;

    /// Steps whose stacks it wants to see once more now that all are done, in ascending order. Only
    /// where the options let the run keep stacks (BatchOptions::sameSize).
    virtual std::vector<std::size_t> StepsToReview() { return {}; }

    /// Sees the model as it was after one of these steps. Fails where going on would be of no use.
    virtual Outcome Review(const ProcessModel& /*model*/, std::size_t /*index*/,
                           RunRecord& /*record*/) {
        return {};
    }

    /// The run is over: all steps are done, or (`complete` is false) one failed or threw. Fails
    /// where something is missing that was asked for. Listeners before it may have completed
    /// `record`.
    virtual Outcome Finish(RunRecord& record, bool complete) = 0;
};

}  // namespace zelmo
