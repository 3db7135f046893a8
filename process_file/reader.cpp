#include "process_file/reader.h"

#include <fmt/format.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include "base/file.h"
#include "process_file/color_table.h"
#include "process_file/reader_state.h"
#include "process_file/step_commands.h"
#include "process_file/words.h"

namespace zelmo {

namespace {

using StepHandler = void (*)(ReaderState&, std::string_view, ProcessStep&);

StepHandler FindStepHandler(std::string_view command) {
    constexpr std::pair<std::string_view, StepHandler> handlers[] = {
        {"deposition", ReadDeposition}, {"coating", ReadCoating},
        {"photo", ReadPhoto},           {"etch", ReadEtch},
        {"release", ReadRelease},       {"strip", ReadStrip},
    };
    for (const auto& [name, handler] : handlers) {
        if (name == command) {
            return handler;
        }
    }
    return nullptr;
}

/// The substrate comes first in every run; a colour table without its colour leaves it black.
ProcessStep SubstrateStep(const ColorTable& colors) {
    ProcessStep step;
    step.kind = StepKind::Substrate;
    step.description = "Substrate";
    if (const ColorEntry* beige = FindColor(colors, "beige")) {
        step.color = ColorOf(*beige);
    }
    return step;
}

void AppendPlainStep(ProcessFile& file, StepKind kind, std::string description) {
    ProcessStep step;
    step.kind = kind;
    step.description = std::move(description);
    file.steps.push_back(std::move(step));
}

/// Acts on a command line; its first word is `command`.
void HandleCommand(ReaderState& state, ProcessFile& file, std::string_view command,
                   std::string_view line) {
    const bool settingsSeenBefore = state.settingsSeen;
    if (!state.settingsSeen && command != "settings") {
        ReportError(state, "First command in process file needs to be the \"settings\" command");
        state.settingsSeen = true;
    }
    if (command == "settings") {
        if (settingsSeenBefore) {
            ReportError(state, "Duplicate settings (gen) command found");
        }
        ReadSettings(state, line, file.settings);
        state.settingsSeen = true;
    } else if (command == "location") {
        if (state.locationSeen) {
            ReportError(state, "Duplicate location (cut) command found");
        }
        ReadLocation(state, line, file.settings);
        state.locationSeen = true;
    } else if (command == "gds") {
        if (state.gdsSeen) {
            ReportError(state, "Duplicate gds command found");
        }
        ReadGds(state, line, file.settings);
        state.gdsSeen = true;
    } else if (const StepHandler handler = FindStepHandler(command)) {
        ProcessStep step;
        handler(state, line, step);
        file.steps.push_back(std::move(step));
    } else if (command == "dump") {
        AppendPlainStep(file, StepKind::Dump, "dumping of stack data");
    } else if (command == "stop") {
        state.stopSeen = true;
    } else {
        ReportError(state, "Unknown command");
    }
}

/// Handles one line of the file, which may be a comment or blank.
void HandleLine(ReaderState& state, ProcessFile& file, std::string_view line) {
    if (line.starts_with('#') || line.find_first_not_of(" \r\n\t") == std::string_view::npos) {
        return;
    }
    line = line.substr(0, line.find_first_of("\r\n"));
    std::string_view rest = line;
    const std::string_view command = TakeWord(rest);
    if (command.empty()) {
        ReportError(state, "Unknown command");
        return;
    }
    HandleCommand(state, file, command, line);
}

}  // namespace

std::string ErrorLine(const ProcessFileError& error) {
    return error.line < 1 ? fmt::format("Error: {}", error.text)
                          : fmt::format("Error in line {}: {}", error.line, error.text);
}

ProcessFile ReadProcessFile(const std::filesystem::path& path, const ColorTable& colors) {
    ProcessFile file;
    // Binary, so that line ends and control bytes mean the same on every platform.
    const FilePointer stream = OpenFile(path, "rb");
    if (!stream) {
        return file;
    }
    file.opened = true;
    file.steps.push_back(SubstrateStep(colors));
    ReaderState state(colors);
    std::string line;
    while (!state.stopSeen && ReadTextLine(stream.get(), line)) {
        ++state.lineNumber;
        HandleLine(state, file, line);
    }
    if (!state.gdsSeen || !state.locationSeen || !state.settingsSeen) {
        ReportError(state, "Missing gds, location, or settings command");
    }
    file.errors = std::move(state.errors);
    return file;
}

}  // namespace zelmo
