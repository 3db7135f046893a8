#pragma once

#include <fmt/printf.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace zelmo {

class LogConsole;

/// A material that a `deposition` or `coating` line has defined. `-targets` selects by type.
struct MaterialEntry {
    std::string name;
    std::string type;
};

/// What one reading of a process file knows besides the model it fills. A fresh one for each read.
struct ReaderState {
    LogConsole* console = nullptr;  ///< where errors go, not owned
    bool settingsSeen = false;      ///< or the error for a missing first `settings` was given
    bool locationSeen = false;
    bool gdsSeen = false;
    bool stopSeen = false;
    bool errorSeen = false;       ///< at least one error was reported
    bool useNm = false;           ///< window and resolution are in nanometres
    bool resistFree = true;       ///< no photoresist is open: a `photo` may come, a `strip` may not
    std::int32_t lineNumber = 0;  ///< lines read so far; 0: errors carry no line number
    std::int32_t fileVersion = 0;  ///< value of `-version`
    std::vector<MaterialEntry> materials;
    std::vector<std::string> etchNames;
    std::vector<std::string> releaseNames;
    std::vector<std::string> stripNames;
};

/// Writes "Error in line <n>: <text>", or "Error: <text>" where there is no line, to the console
/// and records that there was an error.
void ReportErrorText(ReaderState& state, const std::string& text);

/// The same with a printf-style format of %s and %d. Never stops anything: the caller goes on with
/// the value it has.
template <typename... Values>
void ReportError(ReaderState& state, std::string_view format, const Values&... values) {
    ReportErrorText(state, fmt::sprintf(format, values...));
}

}  // namespace zelmo
