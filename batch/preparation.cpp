#include "batch/preparation.h"

#include <fmt/format.h>

#include <algorithm>
#include <string>

#include "base/data_files.h"
#include "batch/input_notes.h"
#include "batch/note_teller.h"
#include "batch/options.h"
#include "batch/reporting.h"
#include "command_line/inputs.h"
#include "command_line/reasons.h"
#include "gds/gds_database.h"
#include "gds/layout_options.h"
#include "gds/layout_repairs.h"
#include "model/process_model.h"
#include "process_file/color_table.h"
#include "process_run/step_choice.h"

namespace zelmo {

namespace {

/// Tells what was read otherwise than it stands in the layout, a line for each kind.
void TellRepairs(const LayoutRepairs& repairs, const std::filesystem::path& layout,
                 Reporting& reporting) {
    for (const std::string& line : RepairLines(repairs)) {
        reporting.Warning({TextOf(layout), 0, "repaired: " + line},
                          fmt::format("the layout {} was repaired: {}", TextOf(layout), line));
    }
}

/// Leaves the model the steps up to the last one that is wanted.
Outcome EndAtStep(const std::string& until, ProcessModel& model) {
    if (until.empty()) {
        return {};
    }
    const StepChoice choice = ChooseSteps(until, model.steps);
    if (!choice.failure.empty()) {
        return {ExitStatus::Usage, "--until: " + choice.failure};
    }
    const auto last = std::find(choice.chosen.rbegin(), choice.chosen.rend(), true);
    model.steps.erase(model.steps.end() - (last - choice.chosen.rbegin()), model.steps.end());
    return {};
}

/// Whether the steps that were asked for are there.
Outcome CheckSteps(const BatchOptions& options, const ProcessModel& model) {
    const StepChoice choice = ChooseSteps(options.steps, model.steps);
    return choice.failure.empty() ? Outcome{}
                                  : Outcome{ExitStatus::Usage, "--steps: " + choice.failure};
}

/// Reads the layout, unless it is there already.
Outcome TakeLayout(const BatchOptions& options, Reporting& reporting, NoteTeller& notes,
                   std::unique_ptr<GdsDatabase>& database) {
    if (database != nullptr) {
        return {};
    }
    Outcome outcome =
        LoadLayoutFile(options.layout, {.repair = options.repair}, &reporting.console, database);
    if (outcome.status == ExitStatus::Layout) {
        NoteRefusedLayout(options, notes);
    }
    if (!outcome.Failed()) {
        TellRepairs(database->repairs, options.layout, reporting);
    }
    return outcome;
}

}  // namespace

std::vector<std::filesystem::path> AssetFolders(const std::optional<std::filesystem::path>& given) {
    if (given) {
        return {*given};
    }
    auto folders = InstalledDataFolders();
    folders.emplace_back();
    return folders;
}

Outcome Prepare(const BatchOptions& options, const std::vector<std::filesystem::path>& assetFolders,
                Reporting& reporting, NoteTeller& notes, std::unique_ptr<GdsDatabase>& database,
                std::unique_ptr<ProcessModel>& model) {
    ColorTable colors;
    Outcome outcome = LoadColors(FindDataFile(assetFolders, "colors.txt"), colors);
    if (!outcome.Failed()) {
        outcome = TakeLayout(options, reporting, notes, database);
    }
    if (!outcome.Failed()) {
        NoteLayout(options, *database, notes);
        outcome = PrepareProcess(options.process, *database, colors, options.view,
                                 &reporting.console, model);
        NoteProcess(options, *database, colors, model.get(), notes);
    }
    if (!outcome.Failed()) {
        outcome = EndAtStep(options.until, *model);
    }
    if (!outcome.Failed()) {
        outcome = CheckSteps(options, *model);
    }
    if (!outcome.Failed()) {
        notes.TellAll();
        outcome = notes.CheckStrict();
    }
    return outcome;
}

}  // namespace zelmo
