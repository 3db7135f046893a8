#include "batch/batch_run.h"

#include <fmt/format.h>

#include <algorithm>
#include <exception>
#include <filesystem>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

#include "base/clock.h"
#include "base/data_files.h"
#include "base/text.h"
#include "batch/consoles.h"
#include "batch/inputs.h"
#include "batch/picture_saver.h"
#include "batch/platform.h"
#include "batch/progress.h"
#include "gds/gds_database.h"
#include "model/process_model.h"
#include "process_run/run_report.h"

namespace zelmo {

namespace {

/// Where a run reports to.
struct Reporting {
    explicit Reporting(bool quiet)
        : progress(quiet ? 0 : TerminalColumns()), console(progress, quiet) {}

    void Error(const std::string& message) {
        progress.Interrupt([&] { WriteErrorLine(message); });
    }

    Progress progress;
    OutputConsole console;
};

/// The dump step replaces its file without a word.
void WarnOfDump(const ProcessModel& model, Reporting& reporting) {
    const bool dumps =
        std::any_of(model.steps.begin(), model.steps.end(),
                    [](const ProcessStep& step) { return step.kind == StepKind::Dump; });
    std::error_code ignored;
    if (dumps && std::filesystem::exists("VertexData.txt", ignored)) {
        reporting.Error("warning: VertexData.txt in the current directory is replaced by the dump");
    }
}

/// Reports why pictures are missing; true if none is.
bool ReportPictures(const std::vector<std::string>& problems, Reporting& reporting) {
    for (const std::string& problem : problems) {
        reporting.Error(problem);
    }
    return problems.empty();
}

/// Executes a step, with a picture after it where there is a saver. False if one is missing.
bool RunStep(ProcessModel& model, std::size_t index, PictureSaver* saver, Reporting& reporting) {
    const ProcessStep& step = model.steps[index];
    reporting.progress.BeginStep(index + 1, model.steps.size(),
                                 Utf8FromWide(WidenBytes(step.description)));
    ExecuteTimedStep(model, step, &reporting.console);
    if (saver == nullptr) {
        return true;
    }
    return ReportPictures(saver->Save(model, index), reporting);
}

/// Executes all steps, with a picture after each where there is a saver. False if one is missing.
bool RunSteps(ProcessModel& model, PictureSaver* saver, Reporting& reporting) {
    bool complete = true;
    ReportRunStart(&reporting.console);
    const std::int32_t start = ElapsedMilliseconds();
    const auto finishPictures = [&] {
        return saver == nullptr || ReportPictures(saver->Finish(), reporting);
    };
    try {
        for (std::size_t index = 0; index < model.steps.size(); ++index) {
            complete = RunStep(model, index, saver, reporting) && complete;
        }
    } catch (...) {
        finishPictures();  // what they have to tell comes first
        throw;
    }
    complete = finishPictures() && complete;
    reporting.progress.End();
    ReportRunEnd(start, &reporting.console);
    return complete;
}

/// The folder that was given, or the program's own ones and the current directory.
std::vector<std::filesystem::path> AssetFolders(const std::optional<std::filesystem::path>& given) {
    if (given) {
        return {*given};
    }
    auto folders = InstalledDataFolders();
    folders.emplace_back();
    return folders;
}

ExitStatus RunFiles(const BatchOptions& options, Reporting& reporting) {
    const auto assetFolders = AssetFolders(options.assets);
    const ColorTable colors = LoadColors(FindDataFile(assetFolders, "colors.txt"));
    auto database = LoadLayoutFile(options.layout, &reporting.console);
    std::optional<PictureSaver> saver;  // to go after the model
    const auto model = PrepareProcess(options.process, *database, colors, &reporting.console);
    database.reset();  // only the preparation reads it
    if (options.checkOnly) {
        return ExitStatus::Success;
    }
    if (options.pictures) {
        saver.emplace(options, assetFolders);
        saver->Begin(*model);
    }
    WarnOfDump(*model, reporting);
    try {
        const bool complete = RunSteps(*model, saver ? &*saver : nullptr, reporting);
        return complete ? ExitStatus::Success : ExitStatus::Picture;
    } catch (const std::bad_alloc&) {
        throw BatchFailure{ExitStatus::Other,
                           fmt::format("the process file {} was not run to its end: there is not "
                                       "enough memory",
                                       Utf8FromWide(PathText(options.process)))};
    }
}

}  // namespace

ExitStatus RunBatch(const BatchOptions& options) {
    Reporting reporting(options.quiet);
    ExitStatus status = ExitStatus::Other;
    try {
        status = RunFiles(options, reporting);
    } catch (const BatchFailure& failure) {
        status = failure.status;
        reporting.Error(failure.message);
    } catch (const std::bad_alloc&) {
        reporting.Error("there is not enough memory for this run");
    } catch (const std::exception& error) {
        reporting.Error(error.what());
    }
    if (!reporting.console.Failure().empty()) {
        reporting.Error(reporting.console.Failure());
        return status == ExitStatus::Success ? ExitStatus::Other : status;
    }
    return status;
}

ExitStatus RunProgram(const std::vector<std::string>& arguments) {
    const CommandLine commandLine = ParseCommandLine(arguments);
    if (commandLine.options) {
        return RunBatch(*commandLine.options);
    }
    if (commandLine.status != ExitStatus::Success) {
        WriteErrorLine(commandLine.text);
        return commandLine.status;
    }
    std::string failure;
    if (!WriteToOutput(commandLine.text, failure)) {
        WriteErrorLine(failure);
        return ExitStatus::Other;
    }
    return ExitStatus::Success;
}

}  // namespace zelmo
