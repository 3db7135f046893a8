#include "python/run_plan.h"

#include <exception>
#include <iterator>
#include <new>
#include <utility>

#include "base/data_files.h"
#include "base/log_console.h"
#include "base/text.h"
#include "command_line/inputs.h"
#include "command_line/reasons.h"
#include "gds/gds_database.h"
#include "gds/layout_error.h"
#include "gds/layout_options.h"
#include "process_file/color_table.h"
#include "process_file/reader.h"
#include "process_run/load_layout.h"
#include "process_run/prepare_run.h"
#include "results/notes/layout_notes.h"
#include "results/notes/preparation_notes.h"
#include "results/notes/process_file_notes.h"
#include "results/readable_text.h"

namespace zelmo {

namespace {

/// What a run tells as it is prepared is told by values here.
class SilentConsole : public LogConsole {
protected:
    void AppendLine(std::wstring /*line*/) override {}
};

const VariableValues* ValuesOf(const ViewChoice& view) {
    return view.variables ? &*view.variables : nullptr;
}

/// Adds what `find` finds. Notes end no run: where there is no memory for them, there are none.
template <typename Find>
void AddNotes(std::vector<Note>& notes, const Find& find) {
    try {
        std::vector<Note> found = find();
        notes.insert(notes.end(), std::make_move_iterator(found.begin()),
                     std::make_move_iterator(found.end()));
    } catch (const std::exception&) {
        return;
    }
}

PlanResult Refuse(const RunInputs& inputs, const PreparedRun& run) {
    PlanResult result;
    result.failure = ProcessFailure(inputs.processName, FirstOf(run.errors)).message;
    for (const ProcessFileError& fault : run.faults) {
        result.errors.emplace_back(fault.line, fault.text);
    }
    return result;
}

}  // namespace

LayoutReading ReadLayout(const std::filesystem::path& path, bool repair) {
    LayoutReading reading;
    SilentConsole console;
    try {
        LayoutOptions options;
        options.repair = repair;
        LayoutLoad load = LoadLayout(path, &console, options);
        if (load.error) {
            reading.failure = LayoutRefusal(path, *load.error).message;
            reading.error = std::make_unique<LayoutError>(*load.error);
        } else {
            auto layout = std::make_shared<LoadedLayout>();
            layout->path = path;
            layout->database = std::move(load.database);
            reading.layout = std::move(layout);
        }
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception& error) {
        reading.failure = LayoutFailure(path, error.what()).message;
    }
    return reading;
}

RunPlan::RunPlan(RunInputs given, ProcessModel prepared)
    : inputs(std::move(given)),
      model(std::move(prepared)),
      commands(CommandTextsOf(inputs.processText, ValuesOf(inputs.view))),
      fingerprints(StepFingerprints(model)) {}

std::string RunPlan::ProcessName() const {
    return ReadableText(TextOf(inputs.processName));
}

ProcessModel RunPlan::View(const Stack& stack) const {
    ProcessModel view;
    view.settings = model.settings;
    view.steps = model.steps;
    const Grid& grid = model.grid;
    view.grid = {grid.columns, grid.rows,    grid.spacing, grid.width,  grid.height,
                 grid.originX, grid.originY, grid.marginX, grid.marginY};
    view.stack = CopyStack(stack);
    return view;
}

PlanResult MakePlan(RunInputs inputs) {
    SilentConsole console;
    ColorTable colors;
    const Outcome loaded = LoadColors(FindDataFile(inputs.dataFolders, "colors.txt"), colors);
    if (loaded.Failed()) {
        return {nullptr, loaded.message, {}};
    }
    ProcessFile file = ReadProcessText(inputs.processText, colors, ValuesOf(inputs.view));
    const GdsDatabase& layout = *inputs.layout->database;
    PreparedRun run =
        PrepareRun(inputs.processName, std::move(file), layout, &console, inputs.view);
    if (run.model == nullptr) {
        return Refuse(inputs, run);
    }
    auto plan = std::make_shared<RunPlan>(std::move(inputs), std::move(*run.model));
    const RunInputs& given = plan->inputs;
    AddNotes(plan->notes,
             [&] { return LayoutNotes(given.layout->path, given.processName, layout); });
    AddNotes(plan->notes,
             [&] { return ProcessFileNotes(given.processName, plan->commands, colors); });
    AddNotes(plan->notes, [&] {
        return PreparationNotes(
            {given.processName, plan->commands, given.view, layout, plan->model, std::nullopt});
    });
    return {std::move(plan), {}, {}};
}

}  // namespace zelmo
