#include "batch/options.h"

#include <memory>

#include <CLI/CLI.hpp>

#include "batch/option_groups/option_group.h"

namespace zelmo {

namespace {

constexpr const char* description =
    "Runs a process on a layout, step by step, and saves a picture of the stack after every step.\n"
    "Standard output shows the lines of the run; errors and progress go to standard error.";

constexpr const char* exitStatuses =
    "Exit status: 0 all done, 1 wrong usage, 2 the layout did not load, 3 the process file was\n"
    "refused, the run could not be prepared or --strict found notes, 4 a picture could not be\n"
    "made or written, 5 anything else.";

using Groups = std::vector<std::unique_ptr<OptionGroup>>;

/// All options, in the order of the help.
Groups MakeGroups() {
    Groups groups;
    groups.push_back(MakeRunOptions());
    groups.push_back(MakeViewOptions());
    groups.push_back(MakeVariableOptions());
    groups.push_back(MakeStepOptions());
    groups.push_back(MakePictureOptions());
    groups.push_back(MakeNumberOptions());
    groups.push_back(MakeReportOptions());
    groups.push_back(MakeNoteOptions());
    groups.push_back(MakeWatchOptions());
    return groups;
}

CommandLine TakeOptions(const CLI::App& app, const Groups& groups) {
    BatchOptions options;
    for (const auto& group : groups) {
        if (const std::string reason = group->Take(app, options); !reason.empty()) {
            return {std::nullopt, WrongUsage(reason)};
        }
    }
    return {options, {}};
}

}  // namespace

CommandLine ParseCommandLine(const std::vector<std::string>& arguments) {
    CLI::App app(description, "zelmo-batch");
    AddUsualOptions(app, exitStatuses);
    const Groups groups = MakeGroups();
    for (const auto& group : groups) {
        group->Add(app);
    }
    if (const auto end = ParseArguments(app, arguments)) {
        return {std::nullopt, *end};
    }
    return TakeOptions(app, groups);
}

}  // namespace zelmo
