#include "batch/options.h"

#include <memory>

#include <CLI/CLI.hpp>

#include "base/version.h"
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
    groups.push_back(MakeNoteOptions());
    groups.push_back(MakeWatchOptions());
    return groups;
}

CommandLine UsageError(const std::string& reason) {
    return {std::nullopt, ExitStatus::Usage, reason + " (--help lists the options)"};
}

CommandLine TakeOptions(const CLI::App& app, const Groups& groups) {
    BatchOptions options;
    for (const auto& group : groups) {
        if (const std::string reason = group->Take(app, options); !reason.empty()) {
            return UsageError(reason);
        }
    }
    return {options, ExitStatus::Success, {}};
}

}  // namespace

CommandLine ParseCommandLine(const std::vector<std::string>& arguments) {
    CLI::App app(description, "zelmo-batch");
    app.allow_windows_style_options(false);
    app.set_version_flag("--version", std::string("zelmo-batch ") + programVersion);
    app.footer(exitStatuses);
    const Groups groups = MakeGroups();
    for (const auto& group : groups) {
        group->Add(app);
    }
    try {
        // The parser takes its arguments last first.
        app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
    } catch (const CLI::CallForHelp&) {
        return {std::nullopt, ExitStatus::Success, app.help()};
    } catch (const CLI::CallForVersion& version) {
        return {std::nullopt, ExitStatus::Success, std::string(version.what()) + "\n"};
    } catch (const CLI::Error& error) {
        return UsageError(error.what());
    }
    return TakeOptions(app, groups);
}

}  // namespace zelmo
