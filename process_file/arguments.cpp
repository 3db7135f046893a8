#include "process_file/arguments.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>

#include "model/process.h"
#include "process_file/color_table.h"
#include "process_file/decimal.h"
#include "process_file/reader_state.h"
#include "process_file/words.h"

namespace zelmo {

namespace {

/// The line from the first occurrence of the argument's text, or nothing.
std::optional<std::string_view> FindArgument(std::string_view line, std::string_view argument) {
    const std::size_t position = line.find(argument);
    return position == std::string_view::npos ? std::nullopt : std::optional(line.substr(position));
}

/// The same, for an argument that has to be there.
std::optional<std::string_view> RequireArgument(ReaderState& state, std::string_view line,
                                                std::string_view argument) {
    const std::optional<std::string_view> found = FindArgument(line, argument);
    if (!found) {
        ReportError(state, "Argument %s not found", argument);
    }
    return found;
}

void CheckChannels(ReaderState& state, const std::array<std::int32_t, 4>& values) {
    const auto isTooBright = [](std::int32_t channel) { return channel > 255; };
    if (std::any_of(values.begin(), values.begin() + 3, isTooBright) || values[3] > 100) {
        ReportError(state, "Invalid value(s) in -color argument");
    }
}

void ReadNumericColor(ReaderState& state, std::string_view line, ProcessStep& step) {
    std::array<std::int32_t, 4> values{};
    ReadIntegers(state, line, "-color", values);
    CheckChannels(state, values);
    const float factor = static_cast<float>(values[3]) / 25500.0f;
    for (std::size_t channel = 0; channel < 3; ++channel) {
        step.color[channel] = static_cast<float>(values[channel]) * factor;
    }
}

void ReadNamedColor(ReaderState& state, std::string_view line, ProcessStep& step,
                    std::string_view unknownNameText) {
    const std::string name = ReadWord(state, line, "-scolor");
    const ColorEntry* const entry = FindColor(state.colors, name);
    if (entry == nullptr) {
        ReportError(state, unknownNameText);
        return;
    }
    step.color = ColorOf(*entry);
}

/// Appends the names of the materials of one type.
void AddTargetsOfType(ReaderState& state, std::string_view type,
                      std::vector<std::string>& targets) {
    bool found = false;
    for (const MaterialEntry& material : state.materials) {
        if (material.type == type) {
            targets.push_back(material.name);
            found = true;
        }
    }
    if (!found) {
        ReportError(state, "Target etch type %s is undefined", type);
    }
}

}  // namespace

bool HasArgument(std::string_view line, std::string_view argument) {
    return FindArgument(line, argument).has_value();
}

void CheckArguments(ReaderState& state, std::string_view line, ArgumentList allowed) {
    TakeBlankSeparated(line);
    std::string_view word = TakeBlankSeparated(line);
    if (word.empty()) {
        ReportError(state, "Command has no argument");
        return;
    }
    for (; !word.empty(); word = TakeBlankSeparated(line)) {
        if (LooksLikeArgument(word) &&
            std::find(allowed.begin(), allowed.end(), word) == allowed.end()) {
            ReportError(state, "Invalid argument %s", word);
        }
    }
}

void ReadIntegers(ReaderState& state, std::string_view line, std::string_view argument,
                  std::span<std::int32_t> values) {
    std::optional<std::string_view> rest = RequireArgument(state, line, argument);
    if (!rest) {
        return;
    }
    TakeBlankSeparated(*rest);
    std::string_view word = TakeBlankSeparated(*rest);
    if (word.empty()) {
        ReportError(state, "No integer value or values found reading argument %s", argument);
        return;
    }
    std::size_t count = 0;
    for (; count < values.size() && !word.empty(); ++count, word = TakeBlankSeparated(*rest)) {
        if (word[0] == '-') {
            ReportError(state, "Not enough integer values found reading argument %s", argument);
            return;
        }
        if (!std::all_of(word.begin(), word.end(), IsAsciiDigit)) {
            ReportError(state, "Non integer value or values found reading argument %s", argument);
            return;
        }
        values[count] = WholeNumber(word);
    }
    if (count < values.size()) {
        ReportError(state, "Argument %s should be followed by %d integer(s)", argument,
                    values.size());
    }
}

std::int32_t ReadInteger(ReaderState& state, std::string_view line, std::string_view argument) {
    std::int32_t value = 0;
    ReadIntegers(state, line, argument, std::span(&value, 1));
    return value;
}

float ReadDecimal(ReaderState& state, std::string_view line, std::string_view argument) {
    std::optional<std::string_view> rest = RequireArgument(state, line, argument);
    if (!rest) {
        return 0.0f;
    }
    TakeWord(*rest);
    const std::optional<float> value = ParseDecimal(SkipWhiteSpace(*rest));
    if (!value) {
        ReportError(state, "No decimal number found reading %s argument", argument);
    }
    return value.value_or(0.0f);
}

float ReadLayoutLength(ReaderState& state, std::string_view line, std::string_view argument) {
    return LayoutLength(state, ReadDecimal(state, line, argument));
}

float LayoutLength(const ReaderState& state, float value) {
    return state.useNm ? value / nanometresPerMicrometre : value;
}

void ReadDecimals(ReaderState& state, std::string_view line, std::string_view argument,
                  std::span<float> values) {
    std::fill(values.begin(), values.end(), 0.0f);
    std::optional<std::string_view> rest = RequireArgument(state, line, argument);
    if (!rest) {
        return;
    }
    for (float& value : values) {
        TakeWord(*rest);
        const std::optional<float> decimal = ParseDecimal(SkipWhiteSpace(*rest));
        if (!decimal) {
            ReportError(state, "No decimal number found reading %s argument", argument);
            std::fill(values.begin(), values.end(), 0.0f);
            return;
        }
        value = *decimal;
    }
}

std::optional<std::string_view> FindArgumentWord(std::string_view line, std::string_view argument) {
    std::string_view rest = line;
    while (!rest.empty()) {
        const std::size_t taken = line.size() - rest.size();
        if (TakeBlankSeparated(rest) == argument) {
            return line.substr(line.find(argument, taken));
        }
    }
    return std::nullopt;
}

std::string ReadWord(ReaderState& state, std::string_view line, std::string_view argument) {
    std::optional<std::string_view> rest = RequireArgument(state, line, argument);
    if (!rest) {
        return {};
    }
    TakeWord(*rest);
    const std::string_view word = TakeWord(*rest);
    if (word.empty()) {
        ReportError(state, "No string found reading %s argument", argument);
    } else if (word[0] == '-') {
        ReportError(state, "Invalid character '-' in argument");
    }
    return std::string(word);
}

std::string_view BlankSeparatedValue(std::string_view line, std::string_view argument) {
    std::string_view rest = FindArgument(line, argument).value_or(std::string_view());
    TakeBlankSeparated(rest);
    return TakeBlankSeparated(rest);
}

void ReadTargets(ReaderState& state, std::string_view line, std::string_view argument,
                 std::vector<std::string>& targets) {
    std::optional<std::string_view> rest = RequireArgument(state, line, argument);
    if (!rest) {
        return;
    }
    TakeBlankSeparated(*rest);
    std::string_view word = TakeBlankSeparated(*rest);
    if (word.empty()) {
        ReportError(state, "No targets found reading %s argument: provide at least one target",
                    argument);
        return;
    }
    for (; !word.empty() && word[0] != '-'; word = TakeBlankSeparated(*rest)) {
        AddTargetsOfType(state, word, targets);
    }
}

void ReadColor(ReaderState& state, std::string_view line, ProcessStep& step,
               std::string_view unknownNameText) {
    if (HasArgument(line, "-color")) {
        ReadNumericColor(state, line, step);
    } else if (HasArgument(line, "-scolor")) {
        ReadNamedColor(state, line, step, unknownNameText);
    } else {
        ReportError(state, "Missing -color or -scolor argument");
    }
}

}  // namespace zelmo
