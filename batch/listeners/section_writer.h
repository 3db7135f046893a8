#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "batch/files/picture_folder.h"
#include "batch/files/picture_list.h"
#include "batch/listeners/step_listener.h"
#include "batch/number_choice.h"
#include "model/process.h"
#include "results/section.h"

namespace zelmo {

struct BatchOptions;

/// Where the files of cuts go. The output folder is known by now.
std::filesystem::path CutFolder(const BatchOptions& options);

/// Takes the sections that were asked for, and writes them at the end of the run: a picture and a
/// CSV file for each cut and step, named after the step.
class SectionWriter : public StepListener {
public:
    /// `options` names the output folder. `tell` receives a line for every file that is missing.
    /// `list` is that of the cuts' folder, if it is to be of this program alone.
    SectionWriter(const BatchOptions& options, std::function<void(const std::string&)> tell,
                  std::shared_ptr<PictureList> list);

    /// Fails where an end lies outside the window, or the files could not be saved.
    Outcome Begin(const ProcessModel& model) override;

    Outcome AfterStep(const ProcessModel& model, std::size_t index, RunRecord& record) override;

    /// Writes the sections of the steps that were done. Fails if one is missing.
    Outcome Finish(RunRecord& record, bool complete) override;

private:
    using Sections = std::map<std::size_t, Section>;  ///< by step

    std::string CutFailure(const ProcessModel& model) const;
    /// Without what no file name can hold.
    std::wstring FileName(std::size_t index, std::size_t cut, const wchar_t* extension) const;
    /// Of the chosen steps, or of all.
    std::vector<std::wstring> FileNames(bool ofAll = false) const;
    /// Writes a cut's files; whether all are there.
    bool Write(std::size_t cut, std::size_t stepCount) const;

    NumberChoice numbers_;
    std::string steps_;  ///< as they were asked for
    std::function<void(const std::string&)> tell_;
    PictureFolder folder_;
    std::shared_ptr<PictureList> list_;  ///< or null
    ProcessSettings settings_;
    std::vector<bool> chosen_;               ///< of the steps
    std::vector<std::string> descriptions_;  ///< of the steps
    std::vector<SectionTaker> takers_;       ///< by cut
    std::vector<Sections> sections_;         ///< by cut
};

}  // namespace zelmo
