#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "model/process_model.h"
#include "process_file/command_text.h"
#include "process_run/step_fingerprints.h"
#include "process_run/view_choice.h"
#include "results/notes/note.h"

namespace zelmo {

struct GdsDatabase;
struct LayoutError;

/// A layout that was read. Runs share it, and nobody changes it.
struct LoadedLayout {
    std::filesystem::path path;
    std::unique_ptr<GdsDatabase> database;
};

/// A layout, or why it was refused.
struct LayoutReading {
    std::shared_ptr<const LoadedLayout> layout;
    std::string failure;                 ///< one line; empty with a layout
    std::unique_ptr<LayoutError> error;  ///< what is wrong with the file, if that is it
};
LayoutReading ReadLayout(const std::filesystem::path& path, bool repair);

/// What a run is made from.
struct RunInputs {
    std::shared_ptr<const LoadedLayout> layout;
    std::string processText;
    std::filesystem::path processName;  ///< what errors and notes call it
    std::vector<std::filesystem::path> dataFolders;
    ViewChoice view;
};

/// All that is known of a run before its first step. The copies of a run share it, and nobody
/// changes it.
struct RunPlan {
    RunInputs inputs;
    ProcessModel model;  ///< its stack is that before the first step
    std::vector<CommandText> commands;
    std::vector<Note> notes;  ///< about the inputs
    std::vector<Fingerprint> fingerprints;

    RunPlan(RunInputs given, ProcessModel prepared);
    RunPlan(const RunPlan&) = delete;
    RunPlan& operator=(const RunPlan&) = delete;

    /// The name of the process for users.
    std::string ProcessName() const;

    /// A model to look at, with a stack that it shares: without the polygons, and without the
    /// tables that only steps need.
    ProcessModel View(const Stack& stack) const;
};

/// A plan, or why there is none.
struct PlanResult {
    std::shared_ptr<const RunPlan> plan;
    std::string failure;                                       ///< one line; empty with a plan
    std::vector<std::pair<std::int32_t, std::string>> errors;  ///< of lines; 0: of the whole
};

/// Prepares a run. Throws std::bad_alloc and what a layout with arrays without points leads to.
PlanResult MakePlan(RunInputs inputs);

}  // namespace zelmo
