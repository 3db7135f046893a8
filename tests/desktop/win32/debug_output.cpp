#include "tests/desktop/win32/debug_output.h"

#include <stdexcept>
#include <utility>

namespace zelmo {

DebugOutput::DebugOutput(DWORD processId)
    : processId_(processId),
      bufferReady_(CreateEventW(nullptr, FALSE, FALSE, L"DBWIN_BUFFER_READY")),
      dataReady_(CreateEventW(nullptr, FALSE, FALSE, L"DBWIN_DATA_READY")),
      mapping_(CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, sizeof(Buffer),
                                  L"DBWIN_BUFFER")),
      buffer_(static_cast<const Buffer*>(
          MapViewOfFile(mapping_, FILE_MAP_READ, 0, 0, sizeof(Buffer)))) {
    if (bufferReady_ == nullptr || dataReady_ == nullptr || buffer_ == nullptr) {
        throw std::runtime_error("the debugger's output cannot be heard");
    }
    thread_ = std::thread([this] { Listen(); });
}

DebugOutput::~DebugOutput() {
    ended_ = true;
    thread_.join();
    UnmapViewOfFile(buffer_);
    CloseHandle(mapping_);
    CloseHandle(dataReady_);
    CloseHandle(bufferReady_);
}

void DebugOutput::Listen() {
    SetEvent(bufferReady_);
    while (!ended_) {
        if (WaitForSingleObject(dataReady_, 20) != WAIT_OBJECT_0) {
            continue;
        }
        if (buffer_->processId == processId_) {
            const std::lock_guard lock(mutex_);
            texts_.emplace_back(buffer_->text);
        }
        SetEvent(bufferReady_);
    }
}

std::vector<std::string> DebugOutput::Take() {
    const std::lock_guard lock(mutex_);
    return std::exchange(texts_, {});
}

}  // namespace zelmo
