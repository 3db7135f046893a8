#pragma once

#include <optional>
#include <span>
#include <string_view>

#include "model/process.h"
#include "process_file/arguments.h"

namespace zelmo {

struct ProcessFile;
struct ReaderState;

/// Takes a command's line into the file. It reads all arguments, reports every error in a fixed
/// order, and leaves its values however wrong they are. `allowed` are the arguments of its row.
using CommandHandler = void (*)(ReaderState& state, std::string_view line, ArgumentList allowed,
                                ProcessFile& file);

/// A command of process files.
struct Command {
    std::string_view word;
    std::optional<StepKind> kind;  ///< of the fresh step that its handler finds last in the file
    ArgumentList arguments;        ///< that it allows; empty where it does not look
    CommandHandler handler;
};

/// The commands that choose what a run looks at, and the one that ends the file.
std::span<const Command> SettingsCommands();

/// The commands that make a step.
std::span<const Command> StepCommands();

/// The command that a word stands for, or null.
const Command* FindCommand(std::string_view word);

}  // namespace zelmo
