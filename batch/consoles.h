#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/log_console.h"

namespace zelmo {

class Progress;

/// The console whose lines are standard output, in UTF-8. A line that cannot be written is noted
/// and ends the writing, not the run.
class OutputConsole : public LogConsole {
public:
    /// `quiet` writes nothing at all.
    OutputConsole(Progress& progress, bool quiet) : progress_(progress), quiet_(quiet) {}

    /// Keeps a copy of the lines from now on, of those that are not written as well.
    void BeginCopy();
    /// The copied lines; there are no more from now on.
    std::vector<std::wstring> TakeCopy();

    /// Why a line could not be written; empty if all were.
    const std::string& Failure() const { return failure_; }

protected:
    void AppendLine(std::wstring line) override;

private:
    Progress& progress_;
    bool quiet_ = false;
    std::optional<std::vector<std::wstring>> copy_;
    std::string failure_;
};

/// Writes "zelmo-batch: <message>" to standard error, as one line whatever the message holds.
void WriteErrorLine(std::string_view message);

}  // namespace zelmo
