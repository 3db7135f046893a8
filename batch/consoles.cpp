#include "batch/consoles.h"

#include "base/text.h"
#include "batch/progress.h"
#include "command_line/standard_streams.h"

namespace zelmo {

void WriteErrorLine(std::string_view message) {
    WriteErrorLine("zelmo-batch", message);
}

void OutputConsole::AppendLine(std::wstring line) {
    if (quiet_ || !failure_.empty()) {
        return;
    }
    progress_.Interrupt([&] { WriteToOutput(Utf8FromWide(line) + '\n', failure_); });
}

}  // namespace zelmo
