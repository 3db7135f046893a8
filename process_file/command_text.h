#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "process_file/substitution.h"

namespace zelmo {

/// A command of a process file as it is written.
struct CommandText {
    std::int32_t line = 0;  ///< counted from 1
    std::string text;       ///< without its line end
};

/// The command that a line of a process file holds, without the line's end. None for comments and
/// blank lines.
std::optional<std::string_view> CommandTextOf(std::string_view line);

/// The commands of a process file that are read: up to its `stop`, that one included, whatever is
/// wrong with them. With `values` its variables are replaced. None where it cannot be opened.
std::vector<CommandText> ReadCommandTexts(const std::filesystem::path& path,
                                          const VariableValues* values = nullptr);

/// The same of the text of a process file.
std::vector<CommandText> CommandTextsOf(std::string_view text,
                                        const VariableValues* values = nullptr);

}  // namespace zelmo
