#include "command_line/interrupt.h"

#include <windows.h>

#include <mutex>
#include <utility>

namespace zelmo {

namespace {

/// The system calls a plain function, on a thread of its own.
struct ConsoleEvents {
    std::mutex mutex;
    std::function<void()> action;
};

ConsoleEvents& Events() {
    static ConsoleEvents events;
    return events;
}

BOOL WINAPI HandleConsoleEvent(DWORD) {
    const std::lock_guard lock(Events().mutex);
    if (const auto action = std::exchange(Events().action, nullptr)) {
        action();
    }
    return TRUE;
}

}  // namespace

struct Interrupt::Waiting {};

Interrupt::Interrupt() : waiting_(std::make_unique<Waiting>()) {
    SetConsoleCtrlHandler(HandleConsoleEvent, TRUE);
}

Interrupt::~Interrupt() {
    SetConsoleCtrlHandler(HandleConsoleEvent, FALSE);
    const std::lock_guard lock(Events().mutex);
    Events().action = nullptr;
}

void Interrupt::Then(std::function<void()> action) {
    const std::lock_guard lock(Events().mutex);
    Events().action = std::move(action);
}

}  // namespace zelmo
