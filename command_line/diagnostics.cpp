#include "command_line/diagnostics.h"

#include <fmt/format.h>

namespace zelmo {

std::string TakeDiagnosticStyle(std::string_view text, DiagnosticStyle& style) {
    if (text != "gcc" && text != "plain") {
        return fmt::format("--diagnostics: \"{}\" is none of gcc and plain", text);
    }
    style = text == "gcc" ? DiagnosticStyle::Gcc : DiagnosticStyle::Plain;
    return {};
}

std::string GccLine(const FileFault& fault, std::string_view severity) {
    return fault.line > 0
               ? fmt::format("{}:{}: {}: {}", fault.file, fault.line, severity, fault.text)
               : fmt::format("{}: {}: {}", fault.file, severity, fault.text);
}

std::vector<std::string> FailureLines(const Outcome& outcome, std::string_view program,
                                      DiagnosticStyle style) {
    if (style == DiagnosticStyle::Plain) {
        return {fmt::format("{}: {}", program, outcome.message)};
    }
    if (outcome.faults.empty()) {
        return {GccLine({std::string(program), 0, outcome.message}, "error")};
    }
    std::vector<std::string> lines;
    for (const FileFault& fault : outcome.faults) {
        lines.push_back(GccLine(fault, "error"));
    }
    return lines;
}

}  // namespace zelmo
