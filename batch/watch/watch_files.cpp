#include "batch/watch/watch_files.h"

#include <memory>
#include <utility>

#include "batch/listeners/listeners.h"
#include "batch/note_teller.h"
#include "batch/options.h"
#include "batch/preparation.h"
#include "batch/reporting.h"
#include "batch/resumable_run.h"
#include "batch/watch/watch.h"
#include "gds/gds_database.h"

namespace zelmo {

Outcome WatchFiles(const BatchOptions& options, Reporting& reporting, NoteTeller& notes,
                   UnfinishedFiles& files, std::atomic<ExitStatus>& status) {
    const auto assetFolders = AssetFolders(options.assets);
    ResumableRun run(options, MakeListeners(options, assetFolders, reporting, notes, files),
                     reporting, files);
    std::unique_ptr<GdsDatabase> database;
    return Watch(options, reporting, [&](const WatchedChange& change) -> WatchedOutcome {
        if (change.layout) {
            database.reset();
        }
        notes.ForgetInputs();
        std::unique_ptr<ProcessModel> model;
        Outcome outcome = Prepare(options, assetFolders, reporting, notes, database, model);
        const bool isPrepared = !outcome.Failed();
        if (isPrepared) {
            outcome = run.Run(std::move(model), change.superseded);
        }
        if (!outcome.Failed()) {
            outcome = notes.CheckStrict();
        }
        notes.TellAll();
        status = outcome.status;
        return {outcome, isPrepared && !run.HasBegun()};
    });
}

}  // namespace zelmo
