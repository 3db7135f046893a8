#include "batch/listeners/section_writer.h"

#include <fmt/format.h>

#include <cstdint>
#include <utility>

#include "base/text.h"
#include "batch/files/safe_file_name.h"
#include "batch/options.h"
#include "batch/run_record.h"
#include "command_line/reasons.h"
#include "model/process_model.h"
#include "pictures/picture_names.h"
#include "pictures/step_image.h"
#include "process_run/step_choice.h"
#include "results/section_svg.h"
#include "results/window_places.h"

namespace zelmo {

namespace {

constexpr const char* listKind = "cut";

}  // namespace

std::filesystem::path CutFolder(const BatchOptions& options) {
    return options.numbers.cutFolder ? *options.numbers.cutFolder : options.output.value();
}

SectionWriter::SectionWriter(const BatchOptions& options,
                             std::function<void(const std::string&)> tell,
                             std::shared_ptr<PictureList> list)
    : numbers_(options.numbers),
      steps_(options.steps),
      tell_(std::move(tell)),
      list_(std::move(list)) {
    folder_.path = CutFolder(options);
    folder_.overwrite = options.overwrite;
    sections_.resize(numbers_.cuts.size());
}

std::string SectionWriter::CutFailure(const ProcessModel& model) const {
    for (const auto& [x0, y0, x1, y1] : numbers_.cuts) {
        std::string reason = WhyOutside(model.settings, {x0, y0});
        if (reason.empty()) {
            reason = WhyOutside(model.settings, {x1, y1});
        }
        if (reason.empty() && x0 == x1 && y0 == y1) {
            reason = "it ends where it begins; --probe tells the stack at a place";
        }
        if (!reason.empty()) {
            return fmt::format("--cut {},{},{},{}: {}", x0, y0, x1, y1, reason);
        }
    }
    return {};
}

Outcome SectionWriter::Begin(const ProcessModel& model) {
    if (const std::string failure = CutFailure(model); !failure.empty()) {
        return {ExitStatus::Usage, failure};
    }
    settings_ = model.settings;
    chosen_ = ChooseSteps(steps_, model.steps).chosen;
    descriptions_.clear();
    for (const ProcessStep& step : model.steps) {
        descriptions_.push_back(step.description);
    }
    takers_.clear();
    for (const auto& [x0, y0, x1, y1] : numbers_.cuts) {
        takers_.emplace_back(model.grid, CutLine{FromLayoutUnit(settings_, {x0, y0}),
                                                 FromLayoutUnit(settings_, {x1, y1})});
    }
    const std::string problem = TakeFolder(folder_, list_.get(), listKind, FileNames());
    return problem.empty() ? Outcome{} : Outcome{ExitStatus::Picture, problem};
}

Outcome SectionWriter::AfterStep(const ProcessModel& model, std::size_t index,
                                 RunRecord& /*record*/) {
    for (std::size_t cut = 0; cut < takers_.size() && chosen_.at(index); ++cut) {
        sections_[cut][index] = takers_[cut].Take(model, NameOf(model.steps[index], index));
    }
    return {};
}

Outcome SectionWriter::Finish(RunRecord& record, bool complete) {
    bool allWritten = true;
    for (std::size_t cut = 0; cut < sections_.size(); ++cut) {
        allWritten = Write(cut, record.seconds.size()) && allWritten;
    }
    if (list_ && complete) {
        if (const std::string problem = list_->KeepOnly(listKind, FileNames(!list_->IsAlone()));
            !problem.empty()) {
            return {ExitStatus::Picture, problem};
        }
    }
    return allWritten ? Outcome{} : Outcome{ExitStatus::Picture, {}};
}

std::wstring SectionWriter::FileName(std::size_t index, std::size_t cut,
                                     const wchar_t* extension) const {
    const auto number = static_cast<std::int32_t>(index) + 1;
    const std::wstring picture = StepImageName(number, descriptions_[index]);
    return SafeFileName(SavedImageName(
        index + 1, picture + WideFromUtf8(fmt::format(" cut {}", cut + 1)), extension));
}

std::vector<std::wstring> SectionWriter::FileNames(bool ofAll) const {
    std::vector<std::wstring> names;
    for (std::size_t index = 0; index < chosen_.size(); ++index) {
        for (std::size_t cut = 0; cut < numbers_.cuts.size() && (ofAll || chosen_[index]); ++cut) {
            names.push_back(FileName(index, cut, L"svg"));
            names.push_back(FileName(index, cut, L"csv"));
        }
    }
    return names;
}

bool SectionWriter::Write(std::size_t cut, std::size_t stepCount) const {
    std::vector<std::pair<std::size_t, Section>> sections;
    std::vector<Section> all;
    for (const auto& [index, section] : sections_[cut]) {
        if (index < stepCount && chosen_[index]) {
            sections.emplace_back(index, section);
            all.push_back(section);
        }
    }
    const SectionView view{HeightsOf(all), numbers_.stretch,
                           CutName(cut + 1, numbers_.cuts[cut], settings_)};
    const std::vector<CutPoint>& points = takers_[cut].Points();
    bool allWritten = true;
    const auto save = [&](std::size_t index, const wchar_t* extension, const std::string& text) {
        const std::string problem = SaveInFolder(folder_, FileName(index, cut, extension), text);
        if (!problem.empty()) {
            tell_(problem);
            allWritten = false;
        }
    };
    for (const auto& [index, section] : sections) {
        save(index, L"svg", SectionSvg(section, points, view));
        save(index, L"csv", SectionCsv(section, points, settings_));
    }
    return allWritten;
}

}  // namespace zelmo
