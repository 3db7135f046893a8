#include "batch/batch_run.h"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <exception>
#include <filesystem>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "base/clock.h"
#include "base/data_files.h"
#include "base/text.h"
#include "batch/consoles.h"
#include "batch/input_notes.h"
#include "batch/note_listener.h"
#include "batch/note_teller.h"
#include "batch/output_folder.h"
#include "batch/picture_saver.h"
#include "batch/probe_writer.h"
#include "batch/progress.h"
#include "batch/run_record.h"
#include "batch/section_writer.h"
#include "batch/step_listener.h"
#include "batch/summary_writer.h"
#include "batch/time_table.h"
#include "command_line/inputs.h"
#include "command_line/platform.h"
#include "command_line/reasons.h"
#include "command_line/standard_streams.h"
#include "gds/gds_database.h"
#include "gds/layout_options.h"
#include "gds/layout_repairs.h"
#include "model/process_model.h"
#include "process_file/color_table.h"
#include "process_run/execute_run.h"
#include "process_run/result_files.h"
#include "process_run/step_choice.h"

namespace zelmo {

namespace {

/// Where a run reports to.
struct Reporting {
    explicit Reporting(bool quiet)
        : columns(quiet ? 0 : TerminalColumns()), progress(columns), console(progress, quiet) {}

    void Tell(const std::string& line) {
        progress.Interrupt([&] { WriteToError(line); });
    }
    void Error(const std::string& message) {
        progress.Interrupt([&] { WriteErrorLine(message); });
    }

    const int columns;  ///< of the terminal that is told how the run goes; 0: none is
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

using Listeners = std::vector<std::unique_ptr<StepListener>>;

/// Executes a step, and lets the listeners take of it what they want.
Outcome RunStep(ProcessModel& model, std::size_t index, const Listeners& listeners,
                RunRecord& record, Reporting& reporting) {
    const ProcessStep& step = model.steps[index];
    reporting.progress.BeginStep(index + 1, model.steps.size(),
                                 Utf8FromWide(WidenBytes(step.description)));
    for (const auto& listener : listeners) {
        listener->BeforeStep(model, index);
    }
    const auto start = std::chrono::steady_clock::now();
    ExecuteStepWithReport(model, step, &reporting.console);
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
    record.seconds.push_back({.step = taken.count()});
    for (const auto& listener : listeners) {
        if (Outcome outcome = listener->AfterStep(model, index, record); outcome.Failed()) {
            return outcome;
        }
    }
    return {};
}

Outcome FinishAll(const Listeners& listeners, const RunRecord& record, bool complete) {
    Outcome first;
    for (const auto& listener : listeners) {
        Outcome outcome = listener->Finish(record, complete);
        if (!first.Failed()) {
            first = std::move(outcome);
        }
    }
    return first;
}

/// Tells a terminal which steps and pictures took the time.
void TellTimes(const ProcessModel& model, const RunRecord& record, const Reporting& reporting) {
    if (reporting.columns < 1) {
        return;
    }
    for (const std::string& line : TimeTable(model.steps, record.seconds, reporting.columns)) {
        WriteToError(line);
    }
}

/// Executes all steps for the listeners.
Outcome RunSteps(ProcessModel& model, const Listeners& listeners, Reporting& reporting) {
    ReportRunStart(&reporting.console);
    const std::int32_t start = ElapsedMilliseconds();
    RunRecord record;
    try {
        for (std::size_t index = 0; index < model.steps.size(); ++index) {
            if (Outcome outcome = RunStep(model, index, listeners, record, reporting);
                outcome.Failed()) {
                FinishAll(listeners, record, false);
                return outcome;
            }
        }
    } catch (...) {
        FinishAll(listeners, record, false);  // what they have to tell comes first
        throw;
    }
    Outcome outcome = FinishAll(listeners, record, true);
    reporting.progress.End();
    ReportRunEnd(start, &reporting.console);
    TellTimes(model, record, reporting);
    return outcome;
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
        reporting.Error(
            fmt::format("warning: the layout {} was repaired: {}", TextOf(layout), line));
    }
}

/// Reads both files into a model that is ready to run.
Outcome Prepare(const BatchOptions& options, const std::vector<std::filesystem::path>& assetFolders,
                Reporting& reporting, NoteTeller& notes, std::unique_ptr<ProcessModel>& model) {
    LogConsole* const console = &reporting.console;
    ColorTable colors;
    Outcome outcome = LoadColors(FindDataFile(assetFolders, "colors.txt"), colors);
    std::unique_ptr<GdsDatabase> database;
    if (!outcome.Failed()) {
        outcome = LoadLayoutFile(options.layout, {.repair = options.repair}, console, database);
    }
    if (outcome.status == ExitStatus::Layout) {
        NoteRefusedLayout(options, notes);
    }
    if (!outcome.Failed()) {
        TellRepairs(database->repairs, options.layout, reporting);
        NoteLayout(options, *database, notes);
        outcome = PrepareProcess(options.process, *database, colors, options.view, console, model);
        NoteProcess(options, *database, colors, model.get(), notes);
    }
    return outcome;
}

/// Whether the steps that were asked for are there.
Outcome CheckSteps(const BatchOptions& options, const ProcessModel& model) {
    const StepChoice choice = ChooseSteps(options.steps, model.steps);
    return choice.failure.empty() ? Outcome{}
                                  : Outcome{ExitStatus::Usage, "--steps: " + choice.failure};
}

/// Whoever takes something of this run.
Listeners MakeListeners(const BatchOptions& given,
                        const std::vector<std::filesystem::path>& assetFolders,
                        Reporting& reporting, NoteTeller& notes) {
    BatchOptions options = given;
    options.output = OutputFolder(given);  // one for all
    Listeners listeners;
    if (notes.WantsNotes()) {
        listeners.push_back(std::make_unique<NoteListener>(options, notes));
    }
    const auto tell = [&](const std::string& line) { reporting.Error(line); };
    if (!options.numbers.probes.empty()) {
        listeners.push_back(std::make_unique<ProbeWriter>(options, [&](const std::string& text) {
            std::string failure;
            reporting.progress.Interrupt([&] { WriteToOutput(text, failure); });
            return failure;
        }));
    }
    if (!options.numbers.cuts.empty()) {
        listeners.push_back(std::make_unique<SectionWriter>(options, tell));
    }
    if (options.pictures) {
        listeners.push_back(std::make_unique<PictureSaver>(options, assetFolders, tell));
    }
    if (options.numbers.summary) {
        listeners.push_back(std::make_unique<SummaryWriter>(options, assetFolders));
    }
    return listeners;
}

Outcome RunFiles(const BatchOptions& options, Reporting& reporting, NoteTeller& notes) {
    const auto assetFolders = AssetFolders(options.assets);
    std::unique_ptr<ProcessModel> model;
    Outcome outcome = Prepare(options, assetFolders, reporting, notes, model);
    if (!outcome.Failed()) {
        outcome = CheckSteps(options, *model);
    }
    if (!outcome.Failed()) {
        notes.TellAll();
        outcome = notes.CheckStrict();
    }
    if (outcome.Failed() || options.checkOnly) {
        return outcome;
    }
    const Listeners listeners = MakeListeners(options, assetFolders, reporting, notes);
    for (const auto& listener : listeners) {
        if (outcome = listener->Begin(*model); outcome.Failed()) {
            return outcome;
        }
    }
    WarnOfDump(*model, reporting);
    try {
        outcome = RunSteps(*model, listeners, reporting);
        return outcome.Failed() ? outcome : notes.CheckStrict();
    } catch (const std::bad_alloc&) {
        return {ExitStatus::Other,
                fmt::format("the process file {} was not run to its end: there is not enough "
                            "memory",
                            TextOf(options.process))};
    }
}

/// The same for whatever the standard library may throw.
Outcome RunFilesOrTellWhyNot(const BatchOptions& options, Reporting& reporting, NoteTeller& notes) {
    try {
        return RunFiles(options, reporting, notes);
    } catch (const std::bad_alloc&) {
        return {ExitStatus::Other, "there is not enough memory for this run"};
    } catch (const std::exception& error) {
        return {ExitStatus::Other, error.what()};
    }
}

}  // namespace

ExitStatus RunBatch(const BatchOptions& options) {
    Reporting reporting(options.quiet);
    NoteTeller notes(options.notes, options.quiet,
                     [&](const std::string& line) { reporting.Tell(line); });
    const Outcome outcome = RunFilesOrTellWhyNot(options, reporting, notes);
    if (!outcome.message.empty()) {
        reporting.Error(outcome.message);
    }
    notes.TellAll();  // those that explain it
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
