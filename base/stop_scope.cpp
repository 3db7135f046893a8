#include "base/stop_scope.h"

namespace zelmo {

namespace {

thread_local const std::atomic<bool>* innermost = nullptr;

}  // namespace

StopScope::StopScope(const std::atomic<bool>* flag) : outer_(innermost) {
    innermost = flag;
}

StopScope::~StopScope() {
    innermost = outer_;
}

const std::atomic<bool>* StopFlag() {
    return innermost;
}

void EndIfStopped() {
    if (innermost != nullptr && innermost->load(std::memory_order_relaxed)) {
        throw Stopped();
    }
}

}  // namespace zelmo
