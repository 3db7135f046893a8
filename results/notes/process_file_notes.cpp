#include "results/notes/process_file_notes.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "base/nearest_name.h"
#include "process_file/commands.h"
#include "process_file/decimal.h"
#include "process_file/words.h"
#include "results/notes/command_words.h"
#include "results/notes/note_kinds.h"
#include "results/notes/note_list.h"

namespace zelmo {

namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;

constexpr std::string_view whiteSpace = " \t\n\v\f\r";

/// A material that a line has defined.
struct Material {
    std::string_view name;
    std::string_view type;
};

/// What the reading of a file knows.
struct Reading {
    NoteList notes;
    const ColorTable& colors;
    std::vector<Material> materials;  ///< so far
};

bool BeginsRemark(std::string_view word) {
    return word.starts_with('#') || word.starts_with("//") || word.starts_with(';');
}

void NoteRemark(Reading& reading, std::int32_t line, std::string_view words) {
    if (!words.empty()) {
        reading.notes.Add(note_kind::remark, line,
                          fmt::format("{} belongs to no argument and is passed by: a comment "
                                      "stands on a line of its own, with # as its first character",
                                      Quoted(words)));
    }
}

/// Tells of a word that is unknown while a known one is near. `what` was looked for in vain.
void NoteMisspelt(Reading& reading, std::int32_t line, const std::string& what,
                  std::string_view nearest) {
    if (!nearest.empty()) {
        reading.notes.Add(note_kind::misspelt, line,
                          fmt::format("{}: is {} meant?", what, Quoted(nearest)));
    }
}

void CheckCommandWord(Reading& reading, std::int32_t line, std::string_view word) {
    std::vector<std::string_view> known;
    for (const auto commands : {SettingsCommands(), StepCommands()}) {
        for (const Command& command : commands) {
            known.push_back(command.word);
        }
    }
    NoteMisspelt(reading, line, fmt::format("there is no command {}", Quoted(word)),
                 NearestName(word, known));
}

/// Tabs part words for some of the readers only; behind the command's word they always do.
void CheckTabs(Reading& reading, std::int32_t line, std::string_view text) {
    TakeWord(text);
    text = SkipWhiteSpace(text);
    const std::size_t tab = text.find('\t');
    const std::string_view behind =
        SkipWhiteSpace(tab == std::string_view::npos ? std::string_view() : text.substr(tab));
    if (!behind.empty()) {
        reading.notes.Add(note_kind::tab, line,
                          fmt::format("a tab stands in front of {}: separate words with blanks",
                                      Quoted(behind.substr(0, behind.find_first_of(whiteSpace)))));
    }
}

/// Text behind the digits of a decimal. A number that is none at all is an error of its own.
void CheckDecimal(Reading& reading, std::int32_t line, std::string_view argument,
                  std::string_view value) {
    const std::size_t length = DecimalLength(value);
    if (length == 0 || length == value.size()) {
        return;
    }
    const std::string_view tail = value.substr(length);
    const bool isComma = tail.size() > 1 && tail[0] == ',' && IsAsciiDigit(tail[1]);
    const std::string_view wayOut =
        isComma ? "decimals have a point, no comma"sv
                : "what stands behind the digits is ignored, a unit too, so leave it out"sv;
    reading.notes.Add(note_kind::numberTail, line,
                      fmt::format("{} {} reads {}: {}", argument, Quoted(value),
                                  Readable(value.substr(0, length)), wayOut));
}

void CheckType(Reading& reading, std::int32_t line, std::string_view type) {
    std::vector<std::string_view> types;
    std::string_view ofThisName;
    for (const Material& material : reading.materials) {
        types.push_back(material.type);
        ofThisName = material.name == type ? material.type : ofThisName;
    }
    if (std::find(types.begin(), types.end(), type) == types.end()) {
        NoteMisspelt(reading, line,
                     fmt::format("no earlier line defines the type {}", Quoted(type)),
                     ofThisName.empty() ? NearestName(type, types) : ofThisName);
    }
}

void CheckTypes(Reading& reading, std::int32_t line, const GivenArgument& given) {
    if (given.values.empty()) {
        reading.notes.Add(note_kind::noType, line,
                          fmt::format("{} names no type, so it selects nothing: name one or more "
                                      "behind it",
                                      given.name));
        return;
    }
    for (const std::string_view type : given.values) {
        if (BeginsRemark(type)) {
            const auto start = static_cast<std::size_t>(type.data() - given.values[0].data());
            const std::string_view all(
                given.values[0].data(),
                static_cast<std::size_t>(given.values.back().data() + given.values.back().size() -
                                         given.values[0].data()));
            NoteRemark(reading, line, all.substr(start));
            return;
        }
        CheckType(reading, line, type);
    }
}

void CheckColor(Reading& reading, std::int32_t line, std::string_view name) {
    if (FindColor(reading.colors, name) != nullptr) {
        return;
    }
    std::vector<std::string_view> names;
    for (const ColorEntry& entry : reading.colors) {
        names.emplace_back(entry.name);
    }
    NoteMisspelt(reading, line, fmt::format("no colour is named {}", Quoted(name)),
                 NearestName(name, names));
}

void CheckTaper(Reading& reading, std::int32_t line, std::string_view degrees) {
    constexpr std::int32_t steepest = 89;
    if (!degrees.empty() && std::all_of(degrees.begin(), degrees.end(), IsAsciiDigit) &&
        WholeNumber(degrees) > steepest) {
        reading.notes.Add(
            note_kind::taper, line,
            fmt::format("-taper {} counts as {}, the steepest: give no more than that", degrees,
                        steepest));
    }
}

void CheckValues(Reading& reading, std::int32_t line, const GivenArgument& given) {
    if (given.kind == ValueKind::Words) {
        CheckTypes(reading, line, given);
    }
    if (given.kind == ValueKind::Decimal) {
        for (const std::string_view value : given.values) {
            CheckDecimal(reading, line, given.name, value);
        }
    }
    if (given.name == "-scolor" && !given.values.empty()) {
        CheckColor(reading, line, given.values[0]);
    }
    if (given.name == "-taper" && !given.values.empty()) {
        CheckTaper(reading, line, given.values[0]);
    }
    NoteRemark(reading, line, given.rest);
}

void CheckTwice(Reading& reading, std::int32_t line, const CommandWords& words) {
    for (std::size_t i = 0; i < words.arguments.size(); ++i) {
        const std::string_view name = words.arguments[i].name;
        const auto isThis = [&](const GivenArgument& given) { return given.name == name; };
        const auto begin = words.arguments.begin();
        const auto position = static_cast<std::ptrdiff_t>(i);
        if (std::none_of(begin, begin + position, isThis) &&
            std::any_of(begin + position + 1, words.arguments.end(), isThis)) {
            reading.notes.Add(
                note_kind::argumentTwice, line,
                fmt::format("{} is given twice, and the first one counts: delete the other",
                            Readable(name)));
        }
    }
}

/// The word of the line around a place.
std::string_view WordAround(std::string_view line, std::size_t place) {
    const std::size_t before = line.find_last_of(whiteSpace, place);
    const std::size_t begin = before == std::string_view::npos ? 0 : before + 1;
    return line.substr(begin, line.find_first_of(whiteSpace, begin) - begin);
}

/// Most arguments are found as plain text, where it comes first.
void CheckInsideWords(Reading& reading, std::int32_t line, std::string_view text,
                      const CommandWords& words) {
    constexpr std::array soughtAsWords = {"-bias"sv, "-shift"sv, "-resist"sv};
    for (const std::string_view argument : words.command->arguments) {
        const std::size_t place = text.find(argument);
        if (place == std::string_view::npos || std::find(soughtAsWords.begin(), soughtAsWords.end(),
                                                         argument) != soughtAsWords.end()) {
            continue;
        }
        const std::string_view around = WordAround(text, place);
        const GivenArgument* const given = FindGiven(words, around);
        if (around == argument || (given != nullptr && !given->known)) {
            continue;
        }
        const std::string wayOut =
            given != nullptr
                ? fmt::format("write {0} with its value in front of {1}", argument, around)
                : "keep dashes out of names"s;
        reading.notes.Add(
            note_kind::argumentInWord, line,
            fmt::format("{} is found inside the word {}: {}", argument, Quoted(around), wayOut));
    }
}

void CheckArgumentNames(Reading& reading, std::int32_t line, const CommandWords& words) {
    const auto allowed = AllowedArguments(*words.command);
    for (const GivenArgument& given : words.arguments) {
        if (!given.known) {
            NoteMisspelt(
                reading, line,
                fmt::format("{} has no argument {}", words.command->word, Quoted(given.name)),
                NearestName(given.name, allowed));
        }
    }
}

void CheckCommand(Reading& reading, const CommandText& command) {
    const std::int32_t line = command.line;
    const CommandWords words = WordsOf(command.text);
    if (words.command == nullptr) {
        CheckCommandWord(reading, line, words.word);
        return;
    }
    if (words.arguments.empty() && words.loose.empty()) {
        return;
    }
    CheckTabs(reading, line, command.text);
    CheckArgumentNames(reading, line, words);
    CheckTwice(reading, line, words);
    CheckInsideWords(reading, line, command.text, words);
    NoteRemark(reading, line, words.loose);
    for (const GivenArgument& given : words.arguments) {
        if (given.known) {
            CheckValues(reading, line, given);
        }
    }
    if (words.command->kind && words.command->kind != StepKind::Photo) {
        if (const std::string_view type = FirstValue(words, "-type"); !type.empty()) {
            reading.materials.push_back({FirstValue(words, "-name"), type});
        }
    }
}

}  // namespace

std::vector<Note> ProcessFileNotes(const std::filesystem::path& file,
                                   const std::vector<CommandText>& commands,
                                   const ColorTable& colors) {
    Reading reading{NoteList(file), colors, {}};
    for (const CommandText& command : commands) {
        CheckCommand(reading, command);
    }
    return reading.notes.Take();
}

}  // namespace zelmo
