#include "batch/batch_run.h"

#include <fmt/format.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <memory>
#include <new>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "base/clock.h"
#include "base/text.h"
#include "batch/consoles.h"
#include "batch/listeners.h"
#include "batch/note_teller.h"
#include "batch/preparation.h"
#include "batch/reporting.h"
#include "batch/run_record.h"
#include "batch/time_table.h"
#include "batch/unfinished_files.h"
#include "batch/watch_files.h"
#include "command_line/interrupt.h"
#include "command_line/platform.h"
#include "command_line/reasons.h"
#include "command_line/standard_streams.h"
#include "gds/gds_database.h"
#include "model/process_model.h"
#include "process_run/execute_run.h"
#include "process_run/result_files.h"

namespace zelmo {

namespace {

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

Outcome RunFiles(const BatchOptions& options, Reporting& reporting, NoteTeller& notes,
                 UnfinishedFiles& files) {
    const auto assetFolders = AssetFolders(options.assets);
    std::unique_ptr<GdsDatabase> database;
    std::unique_ptr<ProcessModel> model;
    Outcome outcome = Prepare(options, assetFolders, reporting, notes, database, model);
    database.reset();
    if (outcome.Failed() || options.checkOnly) {
        return outcome;
    }
    const Listeners listeners = MakeListeners(options, assetFolders, reporting, notes, files);
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
Outcome RunFilesOrTellWhyNot(const BatchOptions& options, Reporting& reporting, NoteTeller& notes,
                             UnfinishedFiles& files) {
    try {
        return RunFiles(options, reporting, notes, files);
    } catch (const std::bad_alloc&) {
        return {ExitStatus::Other, "there is not enough memory for this run"};
    } catch (const std::exception& error) {
        return {ExitStatus::Other, error.what()};
    }
}

/// What shells call a program that Ctrl-C ended.
constexpr int interruptedStatus = 130;

void TellInterruption(const UnfinishedFiles& files) {
    WriteErrorLine("ended by the user" +
                   (files.Pictures() > 0 ? "; " + files.WholePictures() : ""));
}

}  // namespace

ExitStatus RunBatch(const BatchOptions& options) {
    Interrupt interrupt;  // before the first thread
    Reporting reporting(options.quiet);
    NoteTeller notes(options.notes, options.quiet,
                     [&](const std::string& line) { reporting.Tell(line); });
    UnfinishedFiles files;
    std::atomic<ExitStatus> watchStatus = ExitStatus::Success;
    interrupt.Then([&] {
        const auto lock = files.WaitForNone();
        if (options.watch) {
            std::_Exit(static_cast<int>(watchStatus.load()));
        }
        TellInterruption(files);
        std::_Exit(interruptedStatus);
    });
    const Outcome outcome = options.watch
                                ? WatchFiles(options, reporting, notes, files, watchStatus)
                                : RunFilesOrTellWhyNot(options, reporting, notes, files);
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
