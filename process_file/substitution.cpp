#include "process_file/substitution.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cstddef>

#include "base/nearest_name.h"
#include "process_file/words.h"

namespace zelmo {

namespace {

/// Of a line of a process file, in bytes.
constexpr std::size_t longestValue = 1023;

constexpr std::string_view opening = "${";
constexpr std::string_view beforeDefault = ":-";

/// A variable as it stands in a word.
struct Place {
    std::string_view name;
    std::optional<std::string_view> defaultValue;
    std::size_t length = 0;
};

bool IsNameCharacter(char c) {
    return IsAsciiLetter(c) || IsAsciiDigit(c) || c == '_';
}

/// The variable that `text` begins with.
std::optional<Place> PlaceAt(std::string_view text) {
    if (!text.starts_with(opening)) {
        return std::nullopt;
    }
    std::string_view rest = text.substr(opening.size());
    const auto* const nameEnd = std::find_if_not(rest.begin(), rest.end(), IsNameCharacter);
    Place place;
    place.name = rest.substr(0, static_cast<std::size_t>(nameEnd - rest.begin()));
    rest.remove_prefix(place.name.size());
    const std::size_t end = rest.find('}');
    if (!IsVariableName(place.name) || end == std::string_view::npos) {
        return std::nullopt;
    }
    if (rest.starts_with(beforeDefault)) {
        place.defaultValue = rest.substr(beforeDefault.size(), end - beforeDefault.size());
    } else if (end != 0) {
        return std::nullopt;
    }
    place.length = opening.size() + place.name.size() + end + 1;
    return place;
}

/// The value of a variable where it stands, or its default; nothing if it has neither.
std::optional<std::string_view> ValueOf(const Place& place, const VariableValues& values) {
    const auto value = values.find(place.name);
    return value != values.end() ? std::optional<std::string_view>(value->second)
                                 : place.defaultValue;
}

bool IsControl(char character) {
    const auto byte = static_cast<unsigned char>(character);
    return byte < 0x20 || byte == 0x7F;
}

/// Why a text would not be one word of an argument's value.
std::optional<std::string_view> WhyNoWord(std::string_view text) {
    if (text.find(' ') != std::string_view::npos) {
        return "has a blank";
    }
    if (std::any_of(text.begin(), text.end(), IsControl)) {
        return "has a tab, a line end or another control character";
    }
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (LooksLikeArgument(text.substr(i))) {
            return "has a \"-\" in front of a letter, as an argument begins";
        }
    }
    return std::nullopt;
}

/// Appends a word of a line, with its variables replaced if that leaves a word.
void AppendWord(std::string_view word, const VariableValues& values, SubstitutedLine& line) {
    std::string text;
    bool replaced = false;
    for (std::string_view rest = word; !rest.empty();) {
        const std::optional<Place> place = PlaceAt(rest);
        const std::size_t length = place ? place->length : 1;
        std::string_view piece = rest.substr(0, length);
        if (place) {
            line.variables.push_back(
                {std::string(place->name), std::optional<std::string>(place->defaultValue), 0});
            const std::optional<std::string_view> value = ValueOf(*place, values);
            replaced = replaced || value.has_value();
            piece = value.value_or(piece);
        }
        text += piece;
        rest.remove_prefix(length);
    }
    if (replaced && text.empty()) {
        line.errors.push_back(fmt::format("The value {} becomes empty: let it have a text", word));
        text = word;
    } else if (const auto why = replaced ? WhyNoWord(text) : std::nullopt) {
        line.errors.push_back(fmt::format(
            "The value {} becomes \"{}\", which {}: let it have another", word, text, *why));
        text = word;
    }
    line.text += text;
}

}  // namespace

bool IsVariableName(std::string_view text) {
    return !text.empty() && !IsAsciiDigit(text[0]) &&
           std::all_of(text.begin(), text.end(), IsNameCharacter);
}

std::optional<std::string_view> WhyNoValue(std::string_view value) {
    return value.size() > longestValue ? "is longer than the 1023 bytes of a line"
                                       : WhyNoWord(value);
}

SubstitutedLine Substitute(std::string_view line, const VariableValues& values) {
    SubstitutedLine result;
    std::string_view rest = line;
    TakeWord(rest);
    result.text = line.substr(0, line.size() - rest.size());
    while (!rest.empty()) {
        const std::string_view word = SkipWhiteSpace(rest);
        result.text += rest.substr(0, rest.size() - word.size());
        rest = word;
        const std::string_view taken = TakeWord(rest);
        if (LooksLikeArgument(taken)) {
            result.text += taken;
        } else {
            AppendWord(taken, values, result);
        }
    }
    return result;
}

std::vector<std::string> UnusedValues(const VariableValues& values,
                                      std::span<const Variable> variables) {
    std::vector<std::string_view> names;
    for (const Variable& variable : variables) {
        names.emplace_back(variable.name);
    }
    std::vector<std::string> texts;
    for (const auto& value : values) {
        const std::string& name = value.first;
        if (std::find(names.begin(), names.end(), name) != names.end()) {
            continue;
        }
        const std::string_view nearest = NearestName(name, names);
        const std::string wayOut =
            names.empty()      ? "no argument's value holds one, as ${NAME} or ${NAME:-500}"
            : !nearest.empty() ? fmt::format("did you mean {}?", nearest)
                               : fmt::format("the file has {}", fmt::join(names, ", "));
        texts.push_back(fmt::format("{} is set, but no variable of the file: {}", name, wayOut));
    }
    return texts;
}

}  // namespace zelmo
