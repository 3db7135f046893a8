#include "process_file/commands.h"

namespace zelmo {

const Command* FindCommand(std::string_view word) {
    for (const auto commands : {SettingsCommands(), StepCommands()}) {
        for (const Command& command : commands) {
            if (command.word == word) {
                return &command;
            }
        }
    }
    return nullptr;
}

}  // namespace zelmo
