#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "batch/listeners/step_listener.h"
#include "batch/model_choice.h"

namespace zelmo {

class UnfinishedFiles;
struct BatchOptions;
struct ModelFormat;
struct ProcessStep;

/// The format of a model file, by its extension in capitals or small letters; null for others.
const ModelFormat* FormatOfModel(const std::filesystem::path& file);

/// Writes models of the stack: after the last step, or after the chosen ones. A single one has the
/// file's name, several have it with that of their step.
class ModelWriter : public StepListener {
public:
    /// `tell` receives a line for every model that is missing.
    ModelWriter(const BatchOptions& options, std::function<void(const std::string&)> tell,
                UnfinishedFiles& files);

    /// Fails where a file is there that is not to be replaced, or none could be written.
    Outcome Begin(const ProcessModel& model) override;
    Outcome Restart(const ProcessModel& model, std::size_t first) override;
    Outcome AfterStep(const ProcessModel& model, std::size_t index, RunRecord& record) override;

    /// Those that became the ones to write by a change behind them, such as a new last step.
    std::vector<std::size_t> StepsToReview() override;
    Outcome Review(const ProcessModel& model, std::size_t index, RunRecord& record) override;

    /// Fails if a model is missing.
    Outcome Finish(RunRecord& record, bool complete) override;

private:
    std::vector<bool> ChosenSteps(const std::vector<ProcessStep>& steps) const;
    std::string WhyNotWritten(const ProcessModel& model, std::size_t index) const;

    ModelChoice choice_;
    std::string steps_;  ///< as they were asked for
    bool overwrite_;
    std::function<void(const std::string&)> tell_;
    UnfinishedFiles& files_;
    std::vector<std::filesystem::path> targets_;  ///< by step; empty: there is none
    std::set<std::size_t> missing_;
    std::map<std::filesystem::path, std::size_t> held_;  ///< the step that a written file is of
};

}  // namespace zelmo
