#include "batch/listeners/summary_writer.h"

#include <fmt/format.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <span>
#include <utility>

#include "base/data_files.h"
#include "base/file.h"
#include "base/sha256.h"
#include "base/version.h"
#include "batch/run_record.h"
#include "batch/window_places.h"
#include "command_line/reasons.h"
#include "command_line/whole_file.h"
#include "model/process_model.h"
#include "process_run/step_choice.h"
#include "results/readable_text.h"

namespace zelmo {

namespace {

/// The digest of a file's bytes; none if they cannot be read.
std::optional<std::string> DigestOf(const std::filesystem::path& path) {
    const FilePointer file = OpenFile(path, "rb");
    if (file == nullptr) {
        return std::nullopt;
    }
    Sha256 hash;
    std::vector<std::uint8_t> bytes(std::size_t{1} << 16);
    while (const std::size_t count = std::fread(bytes.data(), 1, bytes.size(), file.get())) {
        hash.Add(std::span(bytes).first(count));
    }
    return std::ferror(file.get()) == 0 ? std::optional(hash.Digest()) : std::nullopt;
}

std::string NameInSummary(const std::filesystem::path& path) {
    return ReadableText(TextOf(path));
}

}  // namespace

SummaryWriter::SummaryWriter(BatchOptions options, std::vector<std::filesystem::path> assetFolders)
    : options_(std::move(options)), assetFolders_(std::move(assetFolders)) {}

Outcome SummaryWriter::AddInput(const std::string& role, const std::filesystem::path& path) {
    const std::optional<std::string> digest = DigestOf(path);
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
    shares_ = FindWindowShares(model.grid, model.settings);
    chosen_ = ChooseSteps(options_.steps, model.steps).chosen;
    measured_.clear();
    for (auto& [index, step] : steps_) {
        // What was measured holds; lines above may have come or gone.
        step.line = index < model.steps.size() ? model.steps[index].line : step.line;
    }
    return {};
}

std::vector<MeasuredLayer> SummaryWriter::Measure(const ProcessModel& model) {
    const Stack& stack = model.stack;
    std::vector<MeasuredLayer> layers;
    measured_.resize(stack.layers.size());
    for (std::size_t slot = 0; slot < stack.layers.size(); ++slot) {
        const Layer* const layer = stack.layers[slot].get();
        Measured& measured = measured_[slot];
        if (layer == nullptr) {
            measured = {};
            continue;
        }
        if (measured.version == nullptr || measured.version != layer->version) {
            measured = {layer->version, MeasureLayer(*layer, shares_, stack)};
        }
        layers.push_back({FactsOf(stack, slot), measured.numbers});
    }
    return layers;
}

Outcome SummaryWriter::AfterStep(const ProcessModel& model, std::size_t index,
                                 RunRecord& /*record*/) {
    SummaryStep& step = steps_[index];
    step.step = NameOf(model.steps[index], index);
    step.line = model.steps[index].line;
    step.layers = chosen_.at(index) ? std::optional(Measure(model)) : std::nullopt;
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
