#include "results/notes/command_words.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <limits>
#include <span>

#include "process_file/commands.h"
#include "process_file/words.h"

namespace zelmo {

namespace {

/// What an argument takes behind it.
struct ArgumentValues {
    std::string_view name;
    ValueKind kind;
    std::size_t count;
};

constexpr std::size_t anyNumber = std::numeric_limits<std::size_t>::max();

/// Those of the same name take the same in all commands, with one exception.
constexpr ArgumentValues argumentValues[] = {
    {"-version", ValueKind::Whole, 1},
    {"-N", ValueKind::Whole, 1},
    {"-angle", ValueKind::Whole, 1},
    {"-use_nm", ValueKind::Flag, 0},
    {"-heights", ValueKind::Flag, 0},
    {"-legend", ValueKind::Flag, 0},
    {"-x", ValueKind::Decimal, 1},
    {"-y", ValueKind::Decimal, 1},
    {"-dx", ValueKind::Decimal, 1},
    {"-dy", ValueKind::Decimal, 1},
    {"-cell", ValueKind::Word, 1},
    {"-name", ValueKind::Word, 1},
    {"-type", ValueKind::Word, 1},
    {"-thickness", ValueKind::Decimal, 1},
    {"-sc", ValueKind::Decimal, 1},
    {"-dop", ValueKind::Decimal, 1},
    {"-color", ValueKind::Whole, 4},
    {"-scolor", ValueKind::Word, 1},
    {"-alpha", ValueKind::Decimal, 1},
    {"-mask_id", ValueKind::Word, 1},
    {"-res", ValueKind::Decimal, 1},
    {"-taper", ValueKind::Whole, 1},
    {"-bias", ValueKind::Decimal, 1},
    {"-shift", ValueKind::Decimal, 2},
    {"-targets", ValueKind::Words, anyNumber},
    {"-stop", ValueKind::Words, anyNumber},
    {"-depth", ValueKind::Decimal, 1},
    {"-iso", ValueKind::Decimal, 1},
    {"-resist", ValueKind::Decimal, 1},
    {"-over", ValueKind::Decimal, 1},
    {"-above", ValueKind::Decimal, 1},
    {"-level", ValueKind::Decimal, 1},
};

constexpr std::string_view cellArguments[] = {"-cell"};

GivenArgument BeginArgument(const Command& command, std::string_view word) {
    GivenArgument given;
    given.name = word;
    const auto allowed = AllowedArguments(command);
    given.known = std::find(allowed.begin(), allowed.end(), word) != allowed.end();
    return given;
}

std::size_t CountOf(GivenArgument& given, const Command& command) {
    const auto* const found =
        std::find_if(std::begin(argumentValues), std::end(argumentValues),
                     [&](const ArgumentValues& row) { return row.name == given.name; });
    if (!given.known || found == std::end(argumentValues)) {
        return anyNumber;
    }
    given.kind = command.word == "photo" && given.name == "-type" ? ValueKind::Whole : found->kind;
    return found->count;
}

/// The text from the first of two words to the end of the second.
std::string_view FromTo(std::string_view first, std::string_view last) {
    return first.empty()
               ? last
               : std::string_view(first.data(), static_cast<std::size_t>(last.data() + last.size() -
                                                                         first.data()));
}

void TakeArguments(CommandWords& words, std::string_view rest) {
    std::size_t places = 0;
    for (std::string_view word = TakeWord(rest); !word.empty(); word = TakeWord(rest)) {
        if (LooksLikeArgument(word)) {
            words.arguments.push_back(BeginArgument(*words.command, word));
            places = CountOf(words.arguments.back(), *words.command);
        } else if (words.arguments.empty()) {
            words.loose = FromTo(words.loose, word);
        } else if (GivenArgument& given = words.arguments.back(); given.values.size() < places) {
            given.values.push_back(word);
        } else {
            given.rest = FromTo(given.rest, word);
        }
    }
}

}  // namespace

std::span<const std::string_view> AllowedArguments(const Command& command) {
    return command.word == "gds" ? std::span<const std::string_view>(cellArguments)
                                 : command.arguments;
}

CommandWords WordsOf(std::string_view line) {
    CommandWords words;
    words.word = TakeWord(line);
    words.command = FindCommand(words.word);
    if (words.command != nullptr && words.word != "dump" && words.word != "stop") {
        TakeArguments(words, line);
    }
    return words;
}

const GivenArgument* FindGiven(const CommandWords& words, std::string_view name) {
    const auto found = std::find_if(words.arguments.begin(), words.arguments.end(),
                                    [&](const GivenArgument& given) { return given.name == name; });
    return found != words.arguments.end() ? &*found : nullptr;
}

std::string_view FirstValue(const CommandWords& words, std::string_view name) {
    const GivenArgument* const given = FindGiven(words, name);
    return given != nullptr && !given->values.empty() ? given->values[0] : std::string_view();
}

}  // namespace zelmo
