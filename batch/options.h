#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "batch/listeners/overview_choice.h"
#include "batch/model_choice.h"
#include "batch/number_choice.h"
#include "command_line/command_end.h"
#include "command_line/diagnostics.h"
#include "pictures/picture_files.h"
#include "process_run/view_choice.h"
#include "render/picture_choice.h"

namespace zelmo {

/// Which notes are wanted (results/notes/note_kinds.h).
struct NoteChoice {
    std::vector<std::string> allowed{};  ///< kinds that are not told
    bool none = false;                   ///< not any
    bool strict = false;                 ///< those that are told end the program
};

/// The page that is asked for.
struct ReportChoice {
    std::optional<std::filesystem::path> file;  ///< none: no page
    std::int32_t columns = 200;                 ///< of the model that it has at most
};

/// What the command line asks for.
struct BatchOptions {
    std::filesystem::path layout;
    std::filesystem::path process;
    std::optional<std::filesystem::path> output;  ///< none: a new folder beside the process file
    ViewChoice view;                              ///< in place of what the process file says
    std::string steps;  ///< those of pictures and numbers (ChooseSteps); empty: all
    std::string until;  ///< the last step to execute (ChooseSteps, its last one); empty: of all
    NumberChoice numbers;
    ModelChoice model;
    ReportChoice report;
    OverviewChoice overview;
    bool overwrite = false;  ///< what an earlier run left in the output folder
    PictureFormat format = pictureFormats[0];
    NoteChoice notes;
    DiagnosticStyle diagnostics = DiagnosticStyle::Plain;  ///< of errors and notes
    bool watch = false;  ///< stay, and run again whenever an input is saved
    std::optional<std::uint64_t> memoryMebibytes;  ///< for stacks while watching; none: the usual
    bool repair = false;                           ///< the layout, where it would be refused
    bool checkOnly = false;
    bool listSteps = false;  ///< and run nothing
    bool pictures = true;
    PictureChoice picture;                        ///< how they are drawn
    bool sameSize = false;                        ///< with room for the highest stack, all of them
    std::optional<std::filesystem::path> assets;  ///< none: where the program's own are
    bool quiet = false;
};

using CommandLine = CommandLineOf<BatchOptions>;

/// Reads the arguments behind the program's name, all in UTF-8 (on Linux, the bytes as they are).
CommandLine ParseCommandLine(const std::vector<std::string>& arguments);

}  // namespace zelmo
