#pragma once

#include <cstddef>
#include <filesystem>
#include <vector>

#include "results/notes/note.h"
#include "results/notes/stack_before.h"

namespace zelmo {

struct ProcessModel;

/// What is probably not meant in a finished etch. `openIsKnown`: the resist before it opened all of
/// the window or none of it, and so it has been told why all was removed or nothing.
std::vector<Note> EtchNotes(const std::filesystem::path& processFile, const ProcessModel& model,
                            std::size_t index, const StackBefore& before, bool openIsKnown);

/// The same of a release.
std::vector<Note> ReleaseNotes(const std::filesystem::path& processFile, const ProcessModel& model,
                               std::size_t index, const StackBefore& before);

/// The photo whose resist is there at a step, if any.
const struct ProcessStep* OpenPhoto(const ProcessModel& model, std::size_t index);

}  // namespace zelmo
