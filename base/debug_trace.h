#pragma once

namespace zelmo {

/// Sends one line to the debugger's output, never to the user. printf-style; cut at 1023 bytes.
void DebugTrace(const char* format, ...);

/// Where trace lines go in place of the platform's debugger output; null restores the default.
using DebugTraceSink = void (*)(const char* text);
void SetDebugTraceSink(DebugTraceSink sink);

}  // namespace zelmo
