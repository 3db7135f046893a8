#include "process_file/reader_state.h"

namespace zelmo {

void ReportErrorText(ReaderState& state, const std::string& text) {
    state.errors.push_back({state.lineNumber, text});
}

}  // namespace zelmo
