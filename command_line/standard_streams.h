#pragma once

#include <string>
#include <string_view>

namespace zelmo {

/// Writes text to standard output; false, with the reason in `failure`, if it does not get there.
bool WriteToOutput(std::string_view text, std::string& failure);

/// Writes a line to standard error. It stays one line whatever the text holds.
void WriteToError(std::string_view line);

/// Writes "<program>: <message>" to standard error, as one line.
void WriteErrorLine(std::string_view program, std::string_view message);

}  // namespace zelmo
