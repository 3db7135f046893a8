#include "desktop/win32/edit_console.h"

namespace zelmo {

namespace {

// Appending costs the control time in proportion to what it holds already. Up to this many
// characters every line is shown at once; beyond, lines that come in a burst are shown together,
// when they are as many as those before.
constexpr std::size_t burstThreshold = 20000;

}  // namespace

EditConsole::EditConsole(HWND edit) : edit_(edit), ownerThread_(GetCurrentThreadId()) {
    SendMessageW(edit_, EM_SETLIMITTEXT, 0, 0);
}

void EditConsole::Clear() {
    pending_.clear();
    written_ = 0;
    SetWindowTextW(edit_, L"");
}

void EditConsole::AppendLine(std::wstring line) {
    line += L"\r\n";
    if (GetCurrentThreadId() != ownerThread_) {
        AppendText(line);
        return;
    }
    written_ += line.size();
    pending_ += line;
    if (written_ < burstThreshold || pending_.size() >= written_ / 2) {
        Flush();
    }
}

void EditConsole::Flush() {
    if (pending_.empty()) {
        return;
    }
    std::wstring text;
    text.swap(pending_);
    AppendText(text);
}

// On a worker each of these calls is a synchronous hop into the user interface thread.
void EditConsole::AppendText(const std::wstring& text) {
    const auto length = static_cast<WPARAM>(GetWindowTextLengthW(edit_));
    SendMessageW(edit_, EM_SETSEL, length, static_cast<LPARAM>(length));
    SendMessageW(edit_, EM_REPLACESEL, 0, reinterpret_cast<LPARAM>(text.c_str()));
    const LRESULT first = SendMessageW(edit_, EM_GETFIRSTVISIBLELINE, 0, 0);
    const LRESULT count = SendMessageW(edit_, EM_GETLINECOUNT, 0, 0);
    SendMessageW(edit_, EM_LINESCROLL, 0, count - first);
}

}  // namespace zelmo
