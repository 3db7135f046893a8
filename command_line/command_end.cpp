#include "command_line/command_end.h"

#include "command_line/standard_streams.h"

namespace zelmo {

CommandEnd WrongUsage(const std::string& reason) {
    return {ExitStatus::Usage, reason + " (--help lists the options)"};
}

ExitStatus Tell(const CommandEnd& end,
                const std::function<void(const std::string&)>& writeErrorLine) {
    if (end.status != ExitStatus::Success) {
        writeErrorLine(end.text);
        return end.status;
    }
    std::string failure;
    if (!WriteToOutput(end.text, failure)) {
        writeErrorLine(failure);
        return ExitStatus::Other;
    }
    return ExitStatus::Success;
}

}  // namespace zelmo
