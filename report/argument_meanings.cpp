#include "report/argument_meanings.h"

#include <fmt/format.h>

#include <string>
#include <utility>

#include "process_file/commands.h"
#include "process_file/manual.h"
#include "results/notes/command_words.h"
#include "results/readable_text.h"

namespace zelmo {

namespace {

std::string MeaningOf(std::string_view command, std::string_view argument) {
    const ManualRow* const row = FindManualRow(command, argument);
    if (row == nullptr) {
        return {};
    }
    return row->unit.empty() ? std::string(row->meaning)
                             : fmt::format("{}, {}", row->meaning, row->unit);
}

}  // namespace

std::vector<PageArgument> ArgumentsOf(std::string_view line) {
    const CommandWords words = WordsOf(line);
    std::vector<PageArgument> arguments;
    for (const GivenArgument& given : words.arguments) {
        std::string value;
        for (const std::string_view word : given.values) {
            value.append(value.empty() ? "" : " ").append(ReadableText(word));
        }
        arguments.push_back(
            {ReadableText(given.name), std::move(value), MeaningOf(words.word, given.name)});
    }
    return arguments;
}

}  // namespace zelmo
