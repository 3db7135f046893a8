#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <future>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "batch/files/picture_folder.h"
#include "batch/files/picture_list.h"
#include "batch/files/unfinished_files.h"
#include "batch/listeners/step_listener.h"
#include "batch/options.h"
#include "render/gl/gl_context.h"
#include "render/studio.h"

namespace zelmo {

/// Whoever else wants the picture of the step with this index; it is not changed any more.
using PictureTaker =
    std::function<void(std::size_t index, const std::shared_ptr<const StepImage>& image)>;

/// Makes the pictures of a run and saves each as it comes.
class PictureSaver : public StepListener {
public:
    /// `options` names the output folder. The shaders are looked for in `assetFolders`. `tell`
    /// receives a line for every picture that is missing, in their order and on the caller's
    /// thread. `files` counts those that are being written; `list` is that of the
    /// folder, if it is to be of this program alone.
    PictureSaver(const BatchOptions& options, std::vector<std::filesystem::path> assetFolders,
                 std::function<void(const std::string&)> tell, UnfinishedFiles& files,
                 std::shared_ptr<PictureList> list);

    /// Gives each picture to `taker`, too, as it comes and on the caller's thread.
    void AddTaker(PictureTaker taker) { takers_.push_back(std::move(taker)); }

    /// Draws a line of text in a picture of this size (Studio::DrawCaption). For takers.
    StepImage DrawCaption(const std::string& text, std::int32_t width, std::int32_t height);

    /// Gets ready for the pictures of the chosen steps. Fails if none could be made or they could
    /// not be saved.
    Outcome Begin(const ProcessModel& model) override;

    /// Pictures of steps before this one stay. Those that no step of the model has go when the run
    /// is complete.
    Outcome Restart(const ProcessModel& model, std::size_t first) override;

    /// Takes the picture of a chosen step, and saves it on a thread of its own while the next step
    /// runs. One that could not be drawn is told of, and the next is tried all the same. Fails
    /// where there is no hope for others.
    Outcome AfterStep(const ProcessModel& model, std::size_t index, RunRecord& record) override;

    /// With pictures of one size it is only now that they can be drawn: those that have not been
    /// drawn for the highest stack of the run.
    std::vector<std::size_t> StepsToReview() override;
    Outcome Review(const ProcessModel& model, std::size_t index, RunRecord& record) override;

    /// Waits until the last picture has been saved. Fails if one is missing.
    Outcome Finish(RunRecord& record, bool complete) override;

private:
    /// Of the chosen steps, or of all.
    std::vector<std::wstring> FileNames(const ProcessModel& model, bool ofAll = false) const;
    Outcome TakeOver(const ProcessModel& model);
    Outcome Draw(const ProcessModel& model, std::size_t index, RunRecord& record);
    void StartSaving(std::size_t index, StepImage image);
    void WaitForLast();
    void Miss(std::size_t index, const std::string& reason);

    std::vector<std::filesystem::path> assetFolders_;
    std::function<void(const std::string&)> tell_;
    std::unique_ptr<GlContext> context_;  ///< the studio goes while it is current
    std::unique_ptr<Studio> studio_;
    PictureFolder folder_;
    PictureChoice picture_;
    bool sameSize_ = false;
    std::vector<PictureRoom> rooms_;     ///< of all steps so far, for pictures of one size
    std::set<std::size_t> drawn_;        ///< steps whose pictures are of the present size
    std::string steps_;                  ///< as they were asked for
    std::vector<bool> chosen_;           ///< of them, by step
    std::shared_ptr<PictureList> list_;  ///< or null
    UnfinishedFiles* files_ = nullptr;
    std::vector<PictureTaker> takers_;
    std::vector<std::wstring> keptNames_;  ///< files that stay when the run is complete
    std::set<std::size_t> missing_;        ///< steps whose picture is
    std::size_t savingIndex_ = 0;
    std::future<std::string> saving_;  ///< of the last picture; ends before this object does
};

}  // namespace zelmo
