#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "model/process.h"
#include "process_file/color_table.h"
#include "process_file/process_file_error.h"
#include "process_file/substitution.h"

namespace zelmo {

/// The text for the user: "Error in line 12: ...", or "Error: ..." where there is no line.
std::string ErrorLine(const ProcessFileError& error);

/// What a process file asks for, and all that is wrong with it. A file with errors leaves settings
/// and steps that are not to be used.
struct ProcessFile {
    bool opened = false;
    ProcessSettings settings;
    std::vector<ProcessStep> steps;  ///< the substrate step first
    std::vector<ProcessFileError> errors;
    std::vector<Variable> variables;  ///< each once, where they are replaced
};

/// Reads a process file to its end, or to its `stop`. Colour names are looked up in `colors`. With
/// `values` the file's variables are replaced by them, or by their defaults, and a value without a
/// variable is an error; without, nothing is replaced.
ProcessFile ReadProcessFile(const std::filesystem::path& path, const ColorTable& colors,
                            const VariableValues* values = nullptr);

/// The same of the text of a process file, which counts as opened.
ProcessFile ReadProcessText(std::string_view text, const ColorTable& colors,
                            const VariableValues* values = nullptr);

/// The variables of a process file, in the order in which they first come. None if it cannot be
/// opened.
std::vector<Variable> FindVariables(const std::filesystem::path& path);

}  // namespace zelmo
