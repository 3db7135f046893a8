#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <future>
#include <memory>
#include <string>
#include <vector>

#include "batch/options.h"
#include "batch/picture_folder.h"
#include "batch/step_listener.h"
#include "render/gl/gl_context.h"
#include "render/studio.h"

namespace zelmo {

/// Makes the pictures of a run and saves each as it comes.
class PictureSaver : public StepListener {
public:
    /// `options` names the output folder. The shaders are looked for in `assetFolders`. `tell`
    /// receives a line for every picture that is missing, in their order and on the caller's
    /// thread.
    PictureSaver(const BatchOptions& options, std::vector<std::filesystem::path> assetFolders,
                 std::function<void(const std::string&)> tell);

    /// Gets ready for the pictures of the chosen steps. Fails if none could be made or they could
    /// not be saved.
    Outcome Begin(const ProcessModel& model) override;

    /// Takes the picture of a chosen step, and saves it on a thread of its own while the next step
    /// runs. One that could not be drawn is told of, and the next is tried all the same. Fails
    /// where there is no hope for others.
    Outcome AfterStep(const ProcessModel& model, std::size_t index, RunRecord& record) override;

    /// Waits until the last picture has been saved. Fails if one is missing.
    Outcome Finish(const RunRecord& record, bool complete) override;

private:
    /// Of the chosen steps.
    std::vector<std::wstring> FileNames(const ProcessModel& model) const;
    void WaitForLast();
    void Miss(const std::string& reason);

    std::vector<std::filesystem::path> assetFolders_;
    std::function<void(const std::string&)> tell_;
    std::unique_ptr<GlContext> context_;  ///< the studio goes while it is current
    std::unique_ptr<Studio> studio_;
    PictureFolder folder_;
    std::string steps_;         ///< as they were asked for
    std::vector<bool> chosen_;  ///< of them, by step
    bool complete_ = true;
    std::future<std::string> saving_;  ///< of the last picture; ends before this object does
};

}  // namespace zelmo
