#pragma once

#include <windows.h>

#include <atomic>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace zelmo {

/// Listens to what one process sends to the debugger's output, as a debugger's monitor does.
class DebugOutput {
public:
    /// Throws std::runtime_error if the system gives no such channel.
    explicit DebugOutput(DWORD processId);
    ~DebugOutput();
    DebugOutput(const DebugOutput&) = delete;
    DebugOutput& operator=(const DebugOutput&) = delete;

    /// What came since the last call, in its order; line ends come as texts of their own.
    std::vector<std::string> Take();

private:
    void Listen();

    DWORD processId_;
    HANDLE bufferReady_;
    HANDLE dataReady_;
    HANDLE mapping_;
    struct Buffer {
        DWORD processId;
        char text[4096 - sizeof(DWORD)];
    };
    const Buffer* buffer_ = nullptr;
    std::mutex mutex_;  ///< of the texts
    std::vector<std::string> texts_;
    std::atomic<bool> ended_ = false;
    std::thread thread_;
};

}  // namespace zelmo
