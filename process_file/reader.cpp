#include "process_file/reader.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "base/file.h"
#include "base/text_lines.h"
#include "process_file/color_table.h"
#include "process_file/command_text.h"
#include "process_file/commands.h"
#include "process_file/first_command.h"
#include "process_file/reader_state.h"
#include "process_file/words.h"

namespace zelmo {

namespace {

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

/// Acts on a command line; its first word is `word`.
void HandleCommand(ReaderState& state, ProcessFile& file, std::string_view word,
                   std::string_view line) {
    if (!state.settingsSeen && word != firstCommandWord) {
        ReportError(state, "First command in process file needs to be the \"settings\" command");
        state.settingsSeen = true;  // so that this is told once
    }
    const Command* const command = FindCommand(word);
    if (command == nullptr) {
        ReportError(state, "Unknown command");
        return;
    }
    if (command->kind) {
        ProcessStep& step = file.steps.emplace_back();
        step.kind = *command->kind;
        step.line = state.lineNumber;
    }
    command->handler(state, line, command->arguments, file);
}

/// Adds a variable, or to a known one the default that it lacked so far.
void NoteVariable(ReaderState& state, const Variable& variable) {
    const auto hasThisName = [&](const Variable& known) { return known.name == variable.name; };
    const auto known = std::find_if(state.variables.begin(), state.variables.end(), hasThisName);
    if (known == state.variables.end()) {
        state.variables.push_back({variable.name, variable.defaultValue, state.lineNumber});
    } else if (!known->defaultValue) {
        known->defaultValue = variable.defaultValue;
    }
}

/// The line with its variables replaced, if they are.
std::string ReplaceVariables(ReaderState& state, std::string_view line) {
    if (state.values == nullptr) {
        return std::string(line);
    }
    SubstitutedLine substituted = Substitute(line, *state.values);
    for (const Variable& variable : substituted.variables) {
        NoteVariable(state, variable);
    }
    for (const std::string& error : substituted.errors) {
        ReportError(state, "%s", error);
    }
    return std::move(substituted.text);
}

/// Handles one line of the file, which may be a comment or blank.
void HandleLine(ReaderState& state, ProcessFile& file, std::string_view line) {
    const std::optional<std::string_view> command = CommandTextOf(line);
    if (!command) {
        return;
    }
    std::string_view rest = *command;
    const std::string_view word = TakeWord(rest);
    if (word.empty()) {
        ReportError(state, "Unknown command");
        return;
    }
    HandleCommand(state, file, word, ReplaceVariables(state, *command));
}

/// Reads the lines that `take` has, one after the other.
template <typename TakeLine>
ProcessFile ReadLines(const TakeLine& take, const ColorTable& colors,
                      const VariableValues* values) {
    ProcessFile file;
    file.opened = true;
    file.steps.push_back(SubstrateStep(colors));
    ReaderState state(colors, values);
    std::string line;
    while (!state.stopSeen && take(line)) {
        ++state.lineNumber;
        HandleLine(state, file, line);
    }
    if (!state.gdsSeen || !state.locationSeen || !state.settingsSeen) {
        ReportError(state, "Missing gds, location, or settings command");
    }
    file.errors = std::move(state.errors);
    if (values != nullptr) {
        for (std::string& text : UnusedValues(*values, state.variables)) {
            file.errors.push_back({0, std::move(text)});
        }
    }
    file.variables = std::move(state.variables);
    return file;
}

}  // namespace

std::string ErrorLine(const ProcessFileError& error) {
    return error.line < 1 ? fmt::format("Error: {}", error.text)
                          : fmt::format("Error in line {}: {}", error.line, error.text);
}

ProcessFile ReadProcessFile(const std::filesystem::path& path, const ColorTable& colors,
                            const VariableValues* values) {
    // Binary, so that line ends and control bytes mean the same on every platform.
    const FilePointer stream = OpenFile(path, "rb");
    if (!stream) {
        return {};
    }
    return ReadLines([&](std::string& line) { return ReadTextLine(stream.get(), line); }, colors,
                     values);
}

ProcessFile ReadProcessText(std::string_view text, const ColorTable& colors,
                            const VariableValues* values) {
    return ReadLines([&](std::string& line) { return TakeTextLine(text, line); }, colors, values);
}

std::vector<Variable> FindVariables(const std::filesystem::path& path) {
    const VariableValues none;
    return ReadProcessFile(path, ColorTable(), &none).variables;
}

}  // namespace zelmo
