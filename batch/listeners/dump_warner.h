#pragma once

#include "batch/listeners/step_listener.h"

namespace zelmo {

struct Reporting;

/// Tells before a run which files its dump steps will replace: they do so without a word.
class DumpWarner : public StepListener {
public:
    /// `reporting` outlives it.
    explicit DumpWarner(Reporting& reporting) : reporting_(reporting) {}

    Outcome Begin(const ProcessModel& model) override;
    /// By now such a file is the run's own.
    Outcome Restart(const ProcessModel& /*model*/, std::size_t /*first*/) override { return {}; }
    Outcome AfterStep(const ProcessModel& /*model*/, std::size_t /*index*/,
                      RunRecord& /*record*/) override {
        return {};
    }
    Outcome Finish(RunRecord& /*record*/, bool /*complete*/) override { return {}; }

private:
    Reporting& reporting_;
};

}  // namespace zelmo
