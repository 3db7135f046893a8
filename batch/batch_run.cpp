#include "batch/batch_run.h"

#include <atomic>
#include <cstdlib>
#include <exception>
#include <memory>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "batch/consoles.h"
#include "batch/files/unfinished_files.h"
#include "batch/listeners/listeners.h"
#include "batch/note_teller.h"
#include "batch/preparation.h"
#include "batch/reporting.h"
#include "batch/resumable_run.h"
#include "batch/step_list.h"
#include "batch/time_table.h"
#include "batch/watch/watch_files.h"
#include "command_line/interrupt.h"
#include "command_line/platform.h"
#include "command_line/standard_streams.h"
#include "gds/gds_database.h"
#include "model/process_model.h"

namespace zelmo {

namespace {

/// Tells a terminal which steps and pictures took the time of a finished run.
void TellTimes(const ResumableRun& run, const Reporting& reporting) {
    const ProcessModel* const model = run.FinishedModel();
    if (reporting.columns < 1 || model == nullptr) {
        return;
    }
    for (const std::string& line :
         TimeTable(model->steps, run.Record().seconds, reporting.columns)) {
        WriteToError(line);
    }
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
    if (options.listSteps) {
        std::string failure;
        return WriteToOutput(StepList(model->steps), failure) ? Outcome{}
                                                              : Outcome{ExitStatus::Other, failure};
    }
    ResumableRun run(options, MakeListeners(options, assetFolders, reporting, notes, files),
                     reporting, files);
    outcome = run.Run(std::move(model), [] { return false; });
    TellTimes(run, reporting);
    return outcome.Failed() ? outcome : notes.CheckStrict();
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
    UnfinishedFiles files;
    std::atomic<ExitStatus> watchStatus = ExitStatus::Success;
    Interrupt interrupt;  // before the first thread; what it looks at stands above it
    // A list is for whoever reads it, not to be looked for among the lines of a run.
    Reporting reporting(options.quiet || options.listSteps, options.diagnostics);
    NoteTeller notes(options.notes, options.quiet, [&](const Note& note) { reporting.Tell(note); });
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
        reporting.Failure(outcome);
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
    return commandLine.options
               ? RunBatch(*commandLine.options)
               : Tell(commandLine.end, [](const std::string& text) { WriteErrorLine(text); });
}

}  // namespace zelmo
