#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <future>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "batch/options.h"
#include "batch/picture_folder.h"
#include "batch/picture_list.h"
#include "batch/step_listener.h"
#include "batch/unfinished_files.h"
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
    /// folder, if it is to be of this program alone. `takers` are given each picture as it comes,
    /// on the caller's thread.
    PictureSaver(const BatchOptions& options, std::vector<std::filesystem::path> assetFolders,
                 std::function<void(const std::string&)> tell, UnfinishedFiles& files,
                 std::shared_ptr<PictureList> list, std::vector<PictureTaker> takers = {});

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

    /// Waits until the last picture has been saved. Fails if one is missing.
    Outcome Finish(RunRecord& record, bool complete) override;

private:
    /// Of the chosen steps, or of all.
    std::vector<std::wstring> FileNames(const ProcessModel& model, bool ofAll = false) const;
    Outcome TakeOver(const ProcessModel& model);
    void StartSaving(std::size_t index, StepImage image);
    void WaitForLast();
    void Miss(std::size_t index, const std::string& reason);

    std::vector<std::filesystem::path> assetFolders_;
    std::function<void(const std::string&)> tell_;
    std::unique_ptr<GlContext> context_;  ///< the studio goes while it is current
    std::unique_ptr<Studio> studio_;
    PictureFolder folder_;
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
