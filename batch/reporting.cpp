#include "batch/reporting.h"

#include <fmt/format.h>

#include "command_line/platform.h"
#include "command_line/reasons.h"
#include "command_line/standard_streams.h"
#include "results/notes/note.h"

namespace zelmo {

namespace {

constexpr const char* programName = "zelmo-batch";

std::string GccNoteLine(const Note& note) {
    return GccLine({TextOf(note.file), note.line, fmt::format("{} [{}]", note.text, note.kind)},
                   "note");
}

}  // namespace

Reporting::Reporting(bool quiet, DiagnosticStyle diagnostics)
    : style(diagnostics),
      columns(quiet ? 0 : TerminalColumns()),
      progress(columns),
      console(progress, quiet) {}

void Reporting::Tell(const Note& note) {
    const std::string line = style == DiagnosticStyle::Gcc ? GccNoteLine(note) : NoteLine(note);
    progress.Interrupt([&] { WriteToError(line); });
}

void Reporting::Error(const std::string& message) {
    progress.Interrupt([&] { WriteErrorLine(message); });
}

void Reporting::Warning(const FileFault& fault, const std::string& message) {
    if (style == DiagnosticStyle::Gcc) {
        progress.Interrupt([&] { WriteToError(GccLine(fault, "warning")); });
    } else {
        Error("warning: " + message);
    }
}

void Reporting::Failure(const Outcome& outcome) {
    progress.Interrupt([&] {
        for (const std::string& line : FailureLines(outcome, programName, style)) {
            WriteToError(line);
        }
    });
}

}  // namespace zelmo
