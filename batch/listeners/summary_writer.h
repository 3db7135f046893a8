#pragma once

#include <cstddef>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "batch/listeners/step_listener.h"
#include "batch/options.h"
#include "model/process.h"
#include "results/layer_measurer.h"
#include "results/summary.h"

namespace zelmo {

/// Measures the layers after each step, and writes the summary at the end of the run.
class SummaryWriter : public StepListener {
public:
    /// Colours and shaders are looked for in `assetFolders`.
    SummaryWriter(BatchOptions options, std::vector<std::filesystem::path> assetFolders);

    /// Takes the digests of the inputs. Fails where one cannot be read, or the summary could not be
    /// written.
    Outcome Begin(const ProcessModel& model) override;

    Outcome AfterStep(const ProcessModel& model, std::size_t index, RunRecord& record) override;

    /// Writes the summary, also that of a run that was not completed, which it says then.
    Outcome Finish(RunRecord& record, bool complete) override;

private:
    Outcome AddInput(const std::string& role, const std::filesystem::path& path);

    BatchOptions options_;
    std::vector<std::filesystem::path> assetFolders_;
    std::vector<SummaryInput> inputs_;
    ProcessSettings settings_;
    std::optional<LayerMeasurer> measurer_;
    std::vector<bool> chosen_;                  ///< of the steps
    std::map<std::size_t, SummaryStep> steps_;  ///< by step
};

}  // namespace zelmo
