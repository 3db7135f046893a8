#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

// How a command line's arguments are found and read. A line is not parsed from left to right: each
// reader looks for its argument's name anywhere in the line, as plain text with no regard to word
// boundaries. A line has no line end and no NUL byte. Whatever is wrong is reported, and reading
// goes on.

namespace zelmo {

struct ProcessStep;
struct ReaderState;

constexpr float nanometresPerMicrometre = 1000.0f;

/// The names of the arguments that a command allows.
using ArgumentList = std::span<const std::string_view>;

/// Whether the text of `argument` stands anywhere in the line.
bool HasArgument(std::string_view line, std::string_view argument);

/// Reports a line without arguments, and every word of "-" and a letter that is not in the list.
void CheckArguments(ReaderState& state, std::string_view line, ArgumentList allowed);

/// Reads as many unsigned integers behind `argument` as `values` has places. Places that are not
/// reached keep their value; numbers above the largest i32 give the largest.
void ReadIntegers(ReaderState& state, std::string_view line, std::string_view argument,
                  std::span<std::int32_t> values);

/// Reads one integer that starts from 0.
std::int32_t ReadInteger(ReaderState& state, std::string_view line, std::string_view argument);

/// The decimal number behind `argument`, or 0.0 if there is none.
float ReadDecimal(ReaderState& state, std::string_view line, std::string_view argument);

/// A length of the layout in micrometres, of one in the unit that `settings` chose.
float LayoutLength(const ReaderState& state, float value);

/// Reads a decimal that is a length of the layout, in micrometres here.
float ReadLayoutLength(ReaderState& state, std::string_view line, std::string_view argument);

/// Reads as many decimals behind `argument` as `values` has places, which all are 0.0 where there
/// are fewer.
void ReadDecimals(ReaderState& state, std::string_view line, std::string_view argument,
                  std::span<float> values);

/// The line from the first word on that is `argument` and nothing else. For optional arguments
/// whose text can be a piece of names, such as "photo-resist".
std::optional<std::string_view> FindArgumentWord(std::string_view line, std::string_view argument);

/// The word behind `argument`, or an empty text if there is none.
std::string ReadWord(ReaderState& state, std::string_view line, std::string_view argument);

/// The text up to the next blank behind `argument`, empty where there is none. Reports nothing.
std::string_view BlankSeparatedValue(std::string_view line, std::string_view argument);

/// Appends to `targets` the names of all materials so far of the types behind `argument`.
void ReadTargets(ReaderState& state, std::string_view line, std::string_view argument,
                 std::vector<std::string>& targets);

/// Sets the step's colour from `-color` or `-scolor`. `unknownNameText` is the error for a name
/// that the colour table does not hold.
void ReadColor(ReaderState& state, std::string_view line, ProcessStep& step,
               std::string_view unknownNameText);

}  // namespace zelmo
