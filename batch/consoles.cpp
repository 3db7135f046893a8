#include "batch/consoles.h"

#include <utility>

#include "base/text.h"
#include "batch/progress.h"
#include "command_line/standard_streams.h"

namespace zelmo {

void WriteErrorLine(std::string_view message) {
    WriteErrorLine("zelmo-batch", message);
}

void OutputConsole::BeginCopy() {
    copy_.emplace();
}

std::vector<std::wstring> OutputConsole::TakeCopy() {
    std::vector<std::wstring> lines = std::move(copy_).value_or(std::vector<std::wstring>());
    copy_.reset();
    return lines;
}

void OutputConsole::AppendLine(std::wstring line) {
    if (copy_) {
        copy_->push_back(line);
    }
    if (quiet_ || !failure_.empty()) {
        return;
    }
    progress_.Interrupt([&] { WriteToOutput(Utf8FromWide(line) + '\n', failure_); });
}

}  // namespace zelmo
