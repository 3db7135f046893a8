#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

// Variables stand in the values of a process file's arguments, as ${NAME} or, with a default, as
// ${NAME:-500}. A name has ASCII letters, digits and underscores, and no digit first. What does not
// look like that, or has neither a value nor a default, is text like any other.
//
// Argument names are looked for anywhere in a line. So that no value can bring an argument into it,
// lines are cut into words first, neither the command nor a word that begins as an argument's name
// does is replaced in, and the word that comes out is one word as before, without a "-" in front of
// a letter. What a value brings is not looked into again.

namespace zelmo {

/// Values of variables, by name.
using VariableValues = std::map<std::string, std::string, std::less<>>;

/// A variable of a process file.
struct Variable {
    std::string name;
    std::optional<std::string> defaultValue;  ///< of the first place that has one
    std::int32_t line = 0;                    ///< where it stands first, counted from 1

    bool operator==(const Variable&) const = default;
};

bool IsVariableName(std::string_view text);

/// Why no variable can have this value, as "has a blank"; nothing if one can.
std::optional<std::string_view> WhyNoValue(std::string_view value);

/// A command line with its variables replaced.
struct SubstitutedLine {
    std::string text;
    std::vector<Variable> variables;  ///< in their order; one can come several times
    std::vector<std::string> errors;  ///< a text for each word that was left as it stands
};

/// Replaces the variables in the values of a command line without a line end.
SubstitutedLine Substitute(std::string_view line, const VariableValues& values);

/// A text for each value whose variable is none of the file's, with the nearest that is one.
std::vector<std::string> UnusedValues(const VariableValues& values,
                                      std::span<const Variable> variables);

}  // namespace zelmo
