#pragma once

#include <filesystem>
#include <vector>

#include "results/notes/note.h"

namespace zelmo {

struct GdsDatabase;

/// What is probably not meant in a layout that was read: what the file looks like, that it was
/// exchanged with the process file, that it was cut off, has nothing in it or cells of one name.
std::vector<Note> LayoutNotes(const std::filesystem::path& layout,
                              const std::filesystem::path& processFile,
                              const GdsDatabase& database);

/// What explains why a layout was refused: the first three of these.
std::vector<Note> RefusedLayoutNotes(const std::filesystem::path& layout,
                                     const std::filesystem::path& processFile);

}  // namespace zelmo
