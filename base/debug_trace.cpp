#include "base/debug_trace.h"

#include <cstdarg>
#include <cstdio>

#include "base/debug_output.h"

namespace zelmo {

namespace {
DebugTraceSink currentSink = nullptr;
}

void SetDebugTraceSink(DebugTraceSink sink) {
    currentSink = sink;
}

void DebugTrace(const char* format, ...) {
    char buffer[1024] = "";
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(buffer, sizeof buffer, format, arguments);
    va_end(arguments);
    buffer[sizeof buffer - 1] = '\0';
    if (currentSink != nullptr) {
        currentSink(buffer);
    } else {
        SendToDebugger(buffer);
    }
}

}  // namespace zelmo
