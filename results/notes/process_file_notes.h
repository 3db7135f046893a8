#pragma once

#include <filesystem>
#include <vector>

#include "process_file/color_table.h"
#include "process_file/command_text.h"
#include "results/notes/note.h"

namespace zelmo {

/// What is probably not meant in the lines of a process file, whether they are refused or not, by
/// their words alone. `file` is its name for the notes.
std::vector<Note> ProcessFileNotes(const std::filesystem::path& file,
                                   const std::vector<CommandText>& commands,
                                   const ColorTable& colors);

}  // namespace zelmo
