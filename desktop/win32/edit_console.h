#pragma once

#include <windows.h>

#include <cstddef>
#include <string>

#include "base/log_console.h"

namespace zelmo {

/// The console of the desktop: a read-only multi-line Edit control, which is the only store of what
/// was logged. It keeps every line.
class EditConsole : public LogConsole {
public:
    /// Made on the user interface thread, which owns the control.
    explicit EditConsole(HWND edit);

    void Clear();
    /// Shows lines that are still held back. The user interface thread calls it whenever it goes
    /// back to the user: at the end of a message, before a dialog, before a worker starts.
    void Flush();

protected:
    void AppendLine(std::wstring line) override;

private:
    void AppendText(const std::wstring& text);

    HWND edit_;
    DWORD ownerThread_;
    std::size_t written_ = 0;  ///< characters since the last clearing
    std::wstring pending_;     ///< lines of the user interface thread, not yet in the control
};

}  // namespace zelmo
