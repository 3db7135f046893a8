#include "command_line/command_end.h"

#include <CLI/CLI.hpp>

#include "base/version.h"
#include "command_line/standard_streams.h"

namespace zelmo {

void AddUsualOptions(CLI::App& app, std::string_view footer) {
    app.allow_windows_style_options(false);
    app.set_version_flag("--version", app.get_name() + " " + programVersion);
    app.footer(std::string(footer));
}

std::optional<CommandEnd> ParseArguments(CLI::App& app, const std::vector<std::string>& arguments) {
    try {
        // The parser takes its arguments last first.
        app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
    } catch (const CLI::CallForHelp&) {
        return CommandEnd{ExitStatus::Success, app.help()};
    } catch (const CLI::CallForVersion& version) {
        return CommandEnd{ExitStatus::Success, std::string(version.what()) + "\n"};
    } catch (const CLI::Error& error) {
        return WrongUsage(error.what());
    }
    return std::nullopt;
}

CommandEnd WrongUsage(const std::string& reason) {
    return {ExitStatus::Usage, reason + " (--help lists the options)"};
}

ExitStatus Tell(const CommandEnd& end,
                const std::function<void(const std::string&)>& writeErrorLine) {
    if (end.status != ExitStatus::Success) {
        writeErrorLine(end.text);
        return end.status;
    }
    std::string failure;
    if (!WriteToOutput(end.text, failure)) {
        writeErrorLine(failure);
        return ExitStatus::Other;
    }
    return ExitStatus::Success;
}

}  // namespace zelmo
