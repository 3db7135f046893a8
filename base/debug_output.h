#pragma once

namespace zelmo {

/// Hands one trace line to the platform's debugger, with its line end.
void SendToDebugger(const char* text);

}  // namespace zelmo
