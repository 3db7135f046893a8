#pragma once

#include <atomic>
#include <semaphore>

#include "desktop/qt/qt_main_window.h"

namespace zelmo {

/// The program's window. A step can be held at its end, as if it took long: its worker waits, has
/// given up the GL context, and the user interface goes on.
class HoldableWindow : public QtMainWindow {
public:
    /// Holds the step that is the `count`th to end from now on.
    void HoldStep(int count) { stepsToGo_ = count; }
    bool Held() const { return held_; }
    void Release() { release_.release(); }

    void SendStepDone(const ProcessStep& step) override {
        if (--stepsToGo_ == 0) {
            held_ = true;
            release_.acquire();
            held_ = false;
        }
        QtMainWindow::SendStepDone(step);
    }

private:
    std::atomic<int> stepsToGo_ = 0;
    std::atomic<bool> held_ = false;
    std::binary_semaphore release_{0};
};

}  // namespace zelmo
