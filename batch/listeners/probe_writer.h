#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "batch/listeners/step_listener.h"
#include "batch/number_choice.h"
#include "results/probe.h"

namespace zelmo {

struct BatchOptions;

/// Takes the stack at the places that were asked for, and tells of it at the end of the run.
class ProbeWriter : public StepListener {
public:
    /// `print` writes to standard output and returns the reason if that fails.
    ProbeWriter(const BatchOptions& options, std::function<std::string(const std::string&)> print);

    /// Fails where a place lies outside the window or a file could not be written.
    Outcome Begin(const ProcessModel& model) override;

    Outcome AfterStep(const ProcessModel& model, std::size_t index, RunRecord& record) override;

    /// Prints the tables, unless only files were asked for, and writes the files. Nothing of a run
    /// that was not completed.
    Outcome Finish(RunRecord& record, bool complete) override;

private:
    ProbeReport MakeReport(std::size_t stepCount) const;

    NumberChoice numbers_;
    std::string steps_;  ///< as they were asked for
    bool printsTables_ = true;
    std::function<std::string(const std::string&)> print_;
    std::vector<bool> chosen_;  ///< of the steps
    std::string unit_;
    std::map<std::size_t, ProbedStep> taken_;  ///< by step
};

}  // namespace zelmo
