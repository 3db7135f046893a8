#pragma once

#include <cstddef>
#include <filesystem>
#include <future>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "batch/listeners/step_listener.h"
#include "batch/options.h"
#include "model/process.h"
#include "report/field_store.h"
#include "report/page.h"
#include "report/page_bundle.h"

namespace zelmo {

class OutputConsole;
struct StepImage;

/// Makes a page of the run and writes it at its end. What it takes of a step it keeps small.
class ReportWriter : public StepListener {
public:
    /// `options` names the page. The page's own script and style are looked for in `assetFolders`.
    /// The texts of steps are those that `console` is given; it outlives the writer.
    ReportWriter(BatchOptions options, std::vector<std::filesystem::path> assetFolders,
                 OutputConsole& console);

    /// Fails where the page could not be made or written, or is there and is not to be replaced.
    Outcome Begin(const ProcessModel& model) override;

    /// The page of this writer is replaced.
    Outcome Restart(const ProcessModel& model, std::size_t first) override;

    void BeforeStep(const ProcessModel& model, std::size_t index) override;
    Outcome AfterStep(const ProcessModel& model, std::size_t index, RunRecord& record) override;

    /// Takes the picture of the step with this index, which was taken before.
    void TakePicture(std::size_t index, const std::shared_ptr<const StepImage>& image);

    /// Writes the page of a complete run. Fails if it could not. A run that fails leaves no page.
    Outcome Finish(RunRecord& record, bool complete) override;

private:
    /// What is taken of a step.
    struct Taken {
        PageStack stack;
        PagePicture picture;
        PagePicture thumbnail;
    };

    void TakeOver(const ProcessModel& model);
    void WaitForPicture();
    Page MakePage(const RunRecord& record) const;
    PageStep MakeStep(std::size_t index, const RunRecord& record) const;

    BatchOptions options_;
    std::vector<std::filesystem::path> assetFolders_;
    OutputConsole& console_;
    PageBundle bundle_;
    Page head_;                    ///< what does not come from steps
    double zero_ = 0.0;            ///< of the page, from the steps that were taken
    std::vector<PageStep> steps_;  ///< what is known of all before they are taken
    std::vector<bool> chosen_;     ///< by step
    PageGrid grid_;
    std::optional<FieldStore> fields_;
    std::map<std::size_t, Taken> taken_;                            ///< chosen steps so far
    std::map<std::size_t, std::vector<std::string>> consoleLines_;  ///< of steps when they ran
    bool wasWritten_ = false;
    std::size_t pictureIndex_ = 0;
    std::future<std::pair<PagePicture, PagePicture>> picture_;  ///< that is being encoded
};

}  // namespace zelmo
