#include "batch/listeners/model_writer.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <new>
#include <utility>

#include "base/text.h"
#include "batch/files/asked_file.h"
#include "batch/files/safe_file_name.h"
#include "batch/files/unfinished_files.h"
#include "batch/options.h"
#include "batch/run_record.h"
#include "command_line/reasons.h"
#include "command_line/whole_file.h"
#include "model/process_model.h"
#include "pictures/step_image.h"
#include "process_run/step_choice.h"
#include "results/models/model_files.h"

namespace zelmo {

namespace {

namespace fs = std::filesystem;

/// "005 Hole etching"
std::wstring NameOfStep(const ProcessStep& step, std::size_t index) {
    return StepImageName(static_cast<std::int32_t>(index) + 1, step.description);
}

/// "stack.glb" becomes "stack 005 Hole etching.glb".
fs::path WithStep(const fs::path& file, const std::wstring& step) {
    fs::path name = file.stem();
    name += PathFromText(SafeFileName(L" " + step));
    name += file.extension();
    return file.parent_path() / name;
}

}  // namespace

const ModelFormat* FormatOfModel(const fs::path& file) {
    std::string extension = TextOf(file.extension());
    std::transform(extension.begin(), extension.end(), extension.begin(), [](char letter) {
        return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
    });
    for (const ModelFormat& format : modelFormats) {
        if (extension == fmt::format(".{}", format.extension)) {
            return &format;
        }
    }
    return nullptr;
}

ModelWriter::ModelWriter(const BatchOptions& options, std::function<void(const std::string&)> tell,
                         UnfinishedFiles& files)
    : choice_(options.model),
      steps_(options.steps),
      overwrite_(options.overwrite),
      tell_(std::move(tell)),
      files_(files) {}

std::vector<bool> ModelWriter::ChosenSteps(const std::vector<ProcessStep>& steps) const {
    return ChooseSteps(steps_.empty() ? "last" : steps_, steps).chosen;
}

Outcome ModelWriter::Begin(const ProcessModel& model) {
    const std::vector<bool> chosen = ChosenSteps(model.steps);
    const auto count = std::count(chosen.begin(), chosen.end(), true);
    targets_.assign(chosen.size(), {});
    for (std::size_t index = 0; index < chosen.size(); ++index) {
        if (!chosen[index]) {
            continue;
        }
        fs::path& target = targets_[index];
        target = count == 1 ? *choice_.file
                            : WithStep(*choice_.file, NameOfStep(model.steps[index], index));
        if (const std::string reason = WhyNotToWrite(target, "model", overwrite_);
            !reason.empty()) {
            return {ExitStatus::Other, reason};
        }
    }
    return {};
}

Outcome ModelWriter::Restart(const ProcessModel& model, std::size_t first) {
    missing_.erase(missing_.lower_bound(first), missing_.end());
    std::erase_if(held_, [&](const auto& file) { return file.second >= first; });
    return Begin(model);
}

/// Makes and writes the model of a step; the reason if there is none now.
std::string ModelWriter::WhyNotWritten(const ProcessModel& model, std::size_t index) const {
    const fs::path& target = targets_[index];
    std::string reason;
    try {
        const StackModel stack = MakeStackModel(model, choice_.accuracy);
        if (stack.failure.empty()) {
            const ModelFormat& format = *FormatOfModel(*choice_.file);
            const std::string name = Utf8FromWide(NameOfStep(model.steps[index], index));
            const auto write = [&](std::FILE* file) { return format.write(stack, name, file); };
            const UnfinishedFiles::Writing writing(files_);
            return overwrite_ ? WriteWholeFile(target, write) : WriteNewFile(target, write);
        }
        reason = stack.failure;
    } catch (const std::bad_alloc&) {
        reason = "there is not enough memory; fewer grid columns need less";
    } catch (const std::exception& error) {
        reason = error.what();
    }
    return fmt::format("the model {} could not be made: {}", TextOf(target), reason);
}

Outcome ModelWriter::AfterStep(const ProcessModel& model, std::size_t index,
                               RunRecord& /*record*/) {
    if (!targets_.at(index).empty()) {
        const std::string reason = WhyNotWritten(model, index);
        if (reason.empty()) {
            held_[targets_[index]] = index;
        } else {
            tell_(reason);
            missing_.insert(index);
        }
    }
    return {};
}

std::vector<std::size_t> ModelWriter::StepsToReview() {
    std::vector<std::size_t> steps;
    for (std::size_t index = 0; index < targets_.size(); ++index) {
        const auto held = held_.find(targets_[index]);
        const bool isThere = held != held_.end() && held->second == index;
        if (!targets_[index].empty() && !isThere && !missing_.contains(index)) {
            steps.push_back(index);
        }
    }
    return steps;
}

Outcome ModelWriter::Review(const ProcessModel& model, std::size_t index, RunRecord& record) {
    return AfterStep(model, index, record);
}

Outcome ModelWriter::Finish(RunRecord& /*record*/, bool /*complete*/) {
    return missing_.empty() ? Outcome{} : Outcome{ExitStatus::Other, {}};
}

}  // namespace zelmo
