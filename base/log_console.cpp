#include "base/log_console.h"

#include <utility>

#include "base/text.h"

namespace zelmo {

void LogConsole::Write(std::wstring text) {
    AppendLine(std::move(text));
}

void LogConsole::Write(std::string_view text) {
    AppendLine(WidenBytes(text));
}

}  // namespace zelmo
