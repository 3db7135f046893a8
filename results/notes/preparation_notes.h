#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string_view>
#include <vector>

#include "process_file/command_text.h"
#include "process_run/view_choice.h"
#include "results/notes/note.h"

namespace zelmo {

struct GdsDatabase;
struct ProcessModel;

/// What the pictures of a run can show.
struct PictureScale {
    double pixelsPerMicron = 0.0;  ///< across the front edge
    double leastHeight = 0.0;      ///< in micrometres: surfaces closer to each other look like one
};

/// What a run was prepared from. All of it outlives the notes about it.
struct Preparation {
    std::filesystem::path processFile;
    const std::vector<CommandText>& commands;
    const ViewChoice& view;
    const GdsDatabase& layout;
    const ProcessModel& model;          ///< ready to run, nothing executed
    std::optional<PictureScale> scale;  ///< none: no pictures
};

/// What is probably not meant in a process on its layout, as far as it is known before the run.
std::vector<Note> PreparationNotes(const Preparation& preparation);

/// The cell that the process names is not in the layout, and one that is near is.
std::vector<Note> UnknownCellNotes(const std::filesystem::path& processFile,
                                   const std::vector<CommandText>& commands, const ViewChoice& view,
                                   const GdsDatabase& layout);

// What those consist of

/// Where the window lies to the cell, and its shape.
std::vector<Note> WindowNotes(const Preparation& preparation);
/// Masks in the window, and what the grid leaves of them.
std::vector<Note> MaskNotes(const Preparation& preparation);
/// Films that no picture shows, and numbers of another order.
std::vector<Note> SizeNotes(const Preparation& preparation);

/// The line of a command, 0 where there is none.
std::int32_t LineOf(const std::vector<CommandText>& commands, std::string_view word);

/// The line of the window, 0 where the command line has it.
std::int32_t WindowLine(const Preparation& preparation);

}  // namespace zelmo
