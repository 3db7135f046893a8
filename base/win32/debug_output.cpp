#include "base/debug_output.h"

#include <windows.h>

namespace zelmo {

void SendToDebugger(const char* text) {
    OutputDebugStringA(text);
    OutputDebugStringA("\n");
}

}  // namespace zelmo
