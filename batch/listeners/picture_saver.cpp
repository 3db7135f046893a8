#include "batch/listeners/picture_saver.h"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <exception>
#include <memory>
#include <new>
#include <optional>
#include <system_error>
#include <utility>

#include "base/data_files.h"
#include "base/text.h"
#include "batch/run_record.h"
#include "command_line/reasons.h"
#include "model/process_model.h"
#include "pictures/picture_names.h"
#include "pictures/step_image.h"
#include "process_run/step_choice.h"
#include "render/slide/slide_picture.h"

namespace zelmo {

namespace {

namespace fs = std::filesystem;

constexpr const char* listKind = "picture";

/// Pictures are numbered from 1, as in a program that has just started.
std::int32_t ImageNumber(std::size_t index) {
    return static_cast<std::int32_t>(index) + 1;
}

std::string NoPicture(const ProcessModel& model, std::size_t index, const std::string& reason) {
    const std::wstring name = StepImageName(ImageNumber(index), model.steps[index].description);
    return fmt::format("the picture \"{}\" could not be made: {}", Utf8FromWide(name), reason);
}

}  // namespace

PictureSaver::PictureSaver(const BatchOptions& options, std::vector<fs::path> assetFolders,
                           std::function<void(const std::string&)> tell, UnfinishedFiles& files,
                           std::shared_ptr<PictureList> list)
    : assetFolders_(std::move(assetFolders)),
      tell_(std::move(tell)),
      folder_{options.output.value(), options.format, options.overwrite},
      picture_(options.picture),
      sameSize_(options.sameSize),
      steps_(options.steps),
      list_(std::move(list)),
      files_(&files) {}

Outcome PictureSaver::Begin(const ProcessModel& model) {
    std::string problem;
    context_ = CreateOffscreenGlContext(problem);
    if (!context_) {
        return {ExitStatus::Picture, "no picture can be made: " + problem};
    }
    studio_ = std::make_unique<Studio>(FindDataFile(assetFolders_, "surface.shader"),
                                       FindDataFile(assetFolders_, "point.shader"));
    // The desktop draws what it can; pictures that lack their layers are of no use to a script.
    problem = WhyUnusable(*studio_);
    if (!problem.empty()) {
        return {ExitStatus::Picture, problem};
    }
    return TakeOver(model);
}

Outcome PictureSaver::Restart(const ProcessModel& model, std::size_t first) {
    WaitForLast();
    missing_.erase(missing_.lower_bound(first), missing_.end());
    drawn_.erase(drawn_.lower_bound(first), drawn_.end());
    rooms_.resize(std::min(rooms_.size(), first));
    return TakeOver(model);
}

/// Prepares the folder for the pictures of this model.
Outcome PictureSaver::TakeOver(const ProcessModel& model) {
    chosen_ = ChooseSteps(steps_, model.steps).chosen;
    std::erase_if(drawn_, [&](std::size_t step) { return !chosen_.at(step); });
    // Where others have files, too, one does not expect pictures to go that were not asked for.
    keptNames_ = FileNames(model, list_ && !list_->IsAlone());
    const std::string problem = TakeFolder(folder_, list_.get(), listKind, FileNames(model));
    return problem.empty() ? Outcome{} : Outcome{ExitStatus::Picture, problem};
}

Outcome PictureSaver::AfterStep(const ProcessModel& model, std::size_t index, RunRecord& record) {
    if (sameSize_) {
        rooms_.resize(index);
        rooms_.push_back(RoomOf(model, picture_));
        return {};
    }
    return chosen_.at(index) ? Draw(model, index, record) : Outcome{};
}

std::vector<std::size_t> PictureSaver::StepsToReview() {
    if (!sameSize_) {
        return {};
    }
    PictureRoom room;
    for (const PictureRoom& needed : rooms_) {
        room = {std::max(room.top, needed.top), std::max(room.layerCount, needed.layerCount)};
    }
    if (picture_.room != room) {
        picture_.room = room;
        drawn_.clear();
    }
    std::vector<std::size_t> steps;
    for (std::size_t index = 0; index < rooms_.size(); ++index) {
        if (chosen_.at(index) && !drawn_.contains(index)) {
            steps.push_back(index);
        }
    }
    return steps;
}

Outcome PictureSaver::Review(const ProcessModel& model, std::size_t index, RunRecord& record) {
    missing_.erase(index);
    drawn_.insert(index);
    return Draw(model, index, record);
}

Outcome PictureSaver::Draw(const ProcessModel& model, std::size_t index, RunRecord& record) {
    const auto start = std::chrono::steady_clock::now();
    StepImage image;
    std::string problem;
    std::optional<std::string> hopeless;
    try {
        image =
            studio_->TakePicture(model, model.steps[index], ImageNumber(index), picture_, &problem);
    } catch (const std::bad_alloc&) {
        hopeless = "there is not enough memory";
    } catch (const std::exception& error) {
        hopeless = error.what();
    }
    if (!studio_->FontProblem().empty()) {
        hopeless = studio_->FontProblem();
    }
    record.seconds.at(index).picture =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    // One at a time: no more than this picture and the next are in memory.
    WaitForLast();
    if (hopeless) {
        return {ExitStatus::Picture, NoPicture(model, index, *hopeless)};
    }
    if (!problem.empty()) {
        Miss(index, NoPicture(model, index, problem));
        return {};
    }
    StartSaving(index, std::move(image));
    return {};
}

StepImage PictureSaver::DrawCaption(const std::string& text, std::int32_t width,
                                    std::int32_t height) {
    return studio_->DrawCaption(text, width, height);
}

void PictureSaver::StartSaving(std::size_t index, StepImage image) {
    const auto taken = std::make_shared<const StepImage>(std::move(image));
    for (const PictureTaker& taker : takers_) {
        taker(index, taken);
    }
    const auto save = [this, index, taken] {
        const UnfinishedFiles::Writing picture(*files_);
        std::string problem = SavePicture(folder_, index + 1, *taken);
        if (problem.empty()) {
            files_->AddPicture(Utf8FromWide(PictureFileName(folder_, index + 1, taken->name)));
        }
        return problem;
    };
    savingIndex_ = index;
    try {
        saving_ = std::async(std::launch::async, save);
    } catch (const std::system_error&) {
        saving_ = std::async(std::launch::deferred, save);  // no thread to be had
    }
}

Outcome PictureSaver::Finish(RunRecord& /*record*/, bool complete) {
    WaitForLast();
    if (!complete && files_->Pictures() > 0) {
        tell_(files_->WholePictures());
    }
    if (list_ && complete) {
        if (const std::string problem = list_->KeepOnly(listKind, keptNames_); !problem.empty()) {
            return {ExitStatus::Picture, problem};
        }
    }
    return missing_.empty() ? Outcome{} : Outcome{ExitStatus::Picture, {}};
}

std::vector<std::wstring> PictureSaver::FileNames(const ProcessModel& model, bool ofAll) const {
    std::vector<std::wstring> names;
    for (std::size_t index = 0; index < model.steps.size(); ++index) {
        if (ofAll || chosen_[index]) {
            const std::wstring name =
                StepImageName(ImageNumber(index), model.steps[index].description);
            names.push_back(PictureFileName(folder_, index + 1, name));
        }
    }
    return names;
}

void PictureSaver::WaitForLast() {
    if (!saving_.valid()) {
        return;
    }
    if (const std::string problem = saving_.get(); !problem.empty()) {
        Miss(savingIndex_, problem);
    }
}

void PictureSaver::Miss(std::size_t index, const std::string& reason) {
    missing_.insert(index);
    drawn_.erase(index);
    tell_(reason);
}

}  // namespace zelmo
