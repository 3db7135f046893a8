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
#include "gds/layout_options.h"
#include "gds/layout_repairs.h"
#include "model/process_model.h"
#include "process_file/color_table.h"
#include "process_run/execute_run.h"
#include "process_run/result_files.h"

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
    std::error_code ignored;
    for (const ResultFile& file : resultFiles) {
        const bool isAskedFor =
            std::any_of(model.steps.begin(), model.steps.end(),
                        [&](const ProcessStep& step) { return step.result == file.result; });
        if (isAskedFor && std::filesystem::exists(file.fileName, ignored)) {
            reporting.Error(fmt::format(
                "warning: {} in the current directory is replaced by the dump", file.fileName));
        }
    }
}

/// Executes a step, with a picture after it where there is a saver.
Outcome RunStep(ProcessModel& model, std::size_t index, PictureSaver* saver, Reporting& reporting) {
    const ProcessStep& step = model.steps[index];
    reporting.progress.BeginStep(index + 1, model.steps.size(),
                                 Utf8FromWide(WidenBytes(step.description)));
    ExecuteStepWithReport(model, step, &reporting.console);
    return saver != nullptr ? saver->Save(model, index) : Outcome{};
}

/// Executes all steps, with a picture after each where there is a saver.
Outcome RunSteps(ProcessModel& model, PictureSaver* saver, Reporting& reporting) {
    ReportRunStart(&reporting.console);
    const std::int32_t start = ElapsedMilliseconds();
    const auto finishPictures = [&] {
        if (saver != nullptr) {
            saver->Finish();
        }
    };
    try {
        for (std::size_t index = 0; index < model.steps.size(); ++index) {
            if (Outcome outcome = RunStep(model, index, saver, reporting); outcome.Failed()) {
                return outcome;
            }
        }
    } catch (...) {
        finishPictures();  // what they have to tell comes first
        throw;
    }
    finishPictures();
    reporting.progress.End();
    ReportRunEnd(start, &reporting.console);
    const bool complete = saver == nullptr || saver->Complete();
    return complete ? Outcome{} : Outcome{ExitStatus::Picture, {}};
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

/// Tells what was read otherwise than it stands in the layout, a line for each kind.
void TellRepairs(const LayoutRepairs& repairs, const std::filesystem::path& layout,
                 Reporting& reporting) {
    for (const std::string& line : RepairLines(repairs)) {
        reporting.Error(fmt::format("warning: the layout {} was repaired: {}",
                                    Utf8FromWide(PathText(layout)), line));
    }
}

/// Reads both files into a model that is ready to run.
Outcome Prepare(const BatchOptions& options, const std::vector<std::filesystem::path>& assetFolders,
                Reporting& reporting, std::unique_ptr<ProcessModel>& model) {
    LogConsole* const console = &reporting.console;
    ColorTable colors;
    Outcome outcome = LoadColors(FindDataFile(assetFolders, "colors.txt"), colors);
    std::unique_ptr<GdsDatabase> database;
    if (!outcome.Failed()) {
        outcome = LoadLayoutFile(options.layout, {.repair = options.repair}, console, database);
    }
    if (!outcome.Failed()) {
        TellRepairs(database->repairs, options.layout, reporting);
        outcome = PrepareProcess(options.process, *database, colors, options.view, console, model);
    }
    return outcome;
}

Outcome RunFiles(const BatchOptions& options, Reporting& reporting) {
    const auto assetFolders = AssetFolders(options.assets);
    std::unique_ptr<ProcessModel> model;
    Outcome outcome = Prepare(options, assetFolders, reporting, model);
    if (outcome.Failed() || options.checkOnly) {
        return outcome;
    }
    std::optional<PictureSaver> saver;
    if (options.pictures) {
        saver.emplace(options, [&](const std::string& line) { reporting.Error(line); });
        outcome = saver->Begin(*model, assetFolders);
    }
    if (outcome.Failed()) {
        return outcome;
    }
    WarnOfDump(*model, reporting);
    try {
        return RunSteps(*model, saver ? &*saver : nullptr, reporting);
    } catch (const std::bad_alloc&) {
        return {ExitStatus::Other,
                fmt::format("the process file {} was not run to its end: there is not enough "
                            "memory",
                            Utf8FromWide(PathText(options.process)))};
    }
}

/// The same for whatever the standard library may throw.
Outcome RunFilesOrTellWhyNot(const BatchOptions& options, Reporting& reporting) {
    try {
        return RunFiles(options, reporting);
    } catch (const std::bad_alloc&) {
        return {ExitStatus::Other, "there is not enough memory for this run"};
    } catch (const std::exception& error) {
        return {ExitStatus::Other, error.what()};
    }
}

}  // namespace

ExitStatus RunBatch(const BatchOptions& options) {
    Reporting reporting(options.quiet);
    const Outcome outcome = RunFilesOrTellWhyNot(options, reporting);
    if (!outcome.message.empty()) {
        reporting.Error(outcome.message);
    }
    if (reporting.console.Failure().empty()) {
        return outcome.status;
    }
    reporting.Error(reporting.console.Failure());
    return outcome.Failed() ? outcome.status : ExitStatus::Other;
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
