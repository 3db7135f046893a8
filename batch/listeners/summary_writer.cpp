#include "batch/listeners/summary_writer.h"

#include <fmt/format.h>

#include <optional>
#include <utility>

#include "base/data_files.h"
#include "base/file_digest.h"
#include "base/version.h"
#include "batch/run_record.h"
#include "command_line/reasons.h"
#include "command_line/whole_file.h"
#include "model/process_model.h"
#include "process_run/step_choice.h"
#include "results/readable_text.h"
#include "results/window_places.h"

namespace zelmo {

namespace {

std::string NameInSummary(const std::filesystem::path& path) {
    return ReadableText(TextOf(path));
}

}  // namespace

SummaryWriter::SummaryWriter(BatchOptions options, std::vector<std::filesystem::path> assetFolders)
    : options_(std::move(options)), assetFolders_(std::move(assetFolders)) {}

Outcome SummaryWriter::AddInput(const std::string& role, const std::filesystem::path& path) {
    const std::optional<std::string> digest = FileDigest(path);
    if (!digest) {
        return {ExitStatus::Other,
                fmt::format("the file {} cannot be read for the summary", TextOf(path))};
    }
    inputs_.push_back({role, NameInSummary(path), *digest});
    return {};
}

Outcome SummaryWriter::Begin(const ProcessModel& model) {
    if (const std::string reason = WhyNotWritable(*options_.numbers.summary); !reason.empty()) {
        return {ExitStatus::Other, reason};
    }
    std::vector<std::pair<std::string, std::filesystem::path>> files{
        {"layout", options_.layout},
        {"process", options_.process},
        {"colors", FindDataFile(assetFolders_, "colors.txt")}};
    if (options_.pictures) {
        files.emplace_back("surface_shader", FindDataFile(assetFolders_, "surface.shader"));
        files.emplace_back("point_shader", FindDataFile(assetFolders_, "point.shader"));
    }
    inputs_.clear();
    for (const auto& [role, path] : files) {
        if (Outcome outcome = AddInput(role, path); outcome.Failed()) {
            return outcome;
        }
    }
    settings_ = model.settings;
    measurer_.emplace(model.grid, model.settings);
    chosen_ = ChooseSteps(options_.steps, model.steps).chosen;
    for (auto& [index, step] : steps_) {
        // What was measured holds; lines above may have come or gone.
        step.line = index < model.steps.size() ? model.steps[index].line : step.line;
    }
    return {};
}

Outcome SummaryWriter::AfterStep(const ProcessModel& model, std::size_t index,
                                 RunRecord& /*record*/) {
    SummaryStep& step = steps_[index];
    step.step = NameOf(model.steps[index], index);
    step.line = model.steps[index].line;
    step.layers = chosen_.at(index) ? std::optional(measurer_->Measure(model.stack)) : std::nullopt;
    return {};
}

Outcome SummaryWriter::Finish(RunRecord& record, bool complete) {
    Summary summary{"zelmo-batch", programVersion, complete, inputs_, {}};
    for (const auto& [index, step] : steps_) {
        if (index < record.seconds.size()) {
            summary.steps.push_back(step);
            summary.steps.back().seconds = record.seconds[index].step;
            summary.steps.back().pictureSeconds = record.seconds[index].picture;
        }
    }
    const std::string failure = WriteWholeFile(
        *options_.numbers.summary,
        SummaryJson(summary, settings_, record.notes, NameInSummary(options_.process)));
    return failure.empty() ? Outcome{} : Outcome{ExitStatus::Other, failure};
}

}  // namespace zelmo
