#pragma once

#include <span>
#include <string_view>
#include <vector>

namespace zelmo {

struct Command;

/// What the value of an argument is.
enum class ValueKind { Flag, Whole, Decimal, Word, Words };

/// An argument as it is written, with the words up to the next one.
struct GivenArgument {
    std::string_view name;
    bool known = false;                    ///< whether the command allows it
    ValueKind kind = ValueKind::Words;     ///< what it takes
    std::vector<std::string_view> values;  ///< those that it takes
    std::string_view rest;                 ///< the words behind those, to the last one
};

/// A command's line, taken apart by its words. All are pieces of the line.
struct CommandWords {
    std::string_view word;
    const Command* command = nullptr;      ///< null where there is no such command
    std::string_view loose;                ///< the words in front of the first argument
    std::vector<GivenArgument> arguments;  ///< in their order
};

/// The arguments that a command knows. That of `gds` looks for no others, and its row names none.
std::span<const std::string_view> AllowedArguments(const Command& command);

/// Takes apart a line by its white space, tabs among it. What stands behind `dump` and `stop` is
/// nothing to them and is left out, as is what stands behind a word that is no command.
CommandWords WordsOf(std::string_view line);

/// The first argument of this name, or null.
const GivenArgument* FindGiven(const CommandWords& words, std::string_view name);

/// Its first value; empty where there is none.
std::string_view FirstValue(const CommandWords& words, std::string_view name);

}  // namespace zelmo
