#include "process_file/reader_state.h"

#include <fmt/format.h>

#include "base/log_console.h"

namespace zelmo {

void ReportErrorText(ReaderState& state, const std::string& text) {
    if (state.lineNumber < 1) {
        state.console->Write(fmt::format("Error: {}", text));
    } else {
        state.console->Write(fmt::format("Error in line {}: {}", state.lineNumber, text));
    }
    state.errorSeen = true;
}

}  // namespace zelmo
