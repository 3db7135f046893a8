#pragma once

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

    /// Why a line could not be written; empty if all were.
    const std::string& Failure() const { return failure_; }

protected:
    void AppendLine(std::wstring line) override;

private:
    Progress& progress_;
    bool quiet_ = false;
    std::string failure_;
};

/// Keeps the lines that pass through on their way to another console, or to none, in UTF-8: the
/// source of a reason for standard error.
class RememberingConsole : public LogConsole {
public:
    explicit RememberingConsole(LogConsole* next) : next_(next) {}

    const std::vector<std::string>& Lines() const { return lines_; }
    /// The first line that tells of an error, and how many more do; empty if none does.
    std::string FirstError() const;

protected:
    void AppendLine(std::wstring line) override;

private:
    LogConsole* next_ = nullptr;
    std::vector<std::string> lines_;
};

/// Writes text to standard output; false, with the reason in `failure`, if it does not get there.
bool WriteToOutput(std::string_view text, std::string& failure);

/// Writes "zelmo-batch: <message>" to standard error, as one line whatever the message holds.
void WriteErrorLine(std::string_view message);

}  // namespace zelmo
