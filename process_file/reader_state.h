#pragma once

#include <fmt/printf.h>

#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "process_file/reader.h"

namespace zelmo {

/// A material that a `deposition` or `coating` line has defined. `-targets` selects by type.
struct MaterialEntry {
    std::string name;
    std::string type;
};

/// What one reading of a process file knows besides what it fills. A fresh one for each.
struct ReaderState {
    explicit ReaderState(const ColorTable& colorTable,
                         const VariableValues* variableValues = nullptr)
        : colors(colorTable), values(variableValues) {}

    const ColorTable& colors;
    const VariableValues* values;          ///< null: variables are text like any other
    std::vector<Variable> variables;       ///< so far, each once
    std::vector<ProcessFileError> errors;  ///< so far
    bool settingsSeen = false;  ///< or the error for a missing first `settings` was given
    bool locationSeen = false;
    bool gdsSeen = false;
    bool stopSeen = false;
    bool useNm = false;           ///< window and resolution are in nanometres
    bool resistFree = true;       ///< no photoresist is open: a `photo` may come, a `strip` may not
    std::int32_t lineNumber = 0;  ///< lines read so far; 0: errors carry no line number
    std::vector<MaterialEntry> materials;
    std::set<std::pair<StepKind, std::string>> stepNames;  ///< of steps whose names are their own
};

/// Notes what is wrong with the present line, by a printf-style format of %s and %d. Never stops
/// anything: the caller goes on with the value it has.
template <typename... Values>
void ReportError(ReaderState& state, std::string_view format, const Values&... values) {
    state.errors.push_back({state.lineNumber, fmt::sprintf(format, values...)});
}

}  // namespace zelmo
