#include <fmt/format.h>

#include <string>
#include <utility>

#include "base/clock.h"
#include "base/debug_trace.h"
#include "base/log_console.h"
#include "desktop/main_window_logic.h"
#include "process_run/execute_run.h"

// The run of a process: one step at a time, each on a thread of its own, with the GL context handed
// over to it and back. Nothing is locked; the alternation of the two threads is what keeps it safe.
// The user interface thread must therefore never wait for a worker.

namespace zelmo {

namespace {

void TraceThread(const char* operation, const Platform& platform) {
    DebugTrace("%s", fmt::format("{} (Thread {})", operation, platform.ThreadNumber()).c_str());
}

}  // namespace

void MainWindowLogic::RunNext(bool first) {
    TraceThread("RunNext", platform_);
    if (first) {
        stepIndex_ = 0;
        runStartClock_ = ElapsedMilliseconds();
    }
    const bool stepLeft = static_cast<std::size_t>(stepIndex_) < model_->steps.size();
    if (stepLeft && !stopRequested_) {
        platform_.GiveUpContext();
        const ProcessStep& step = model_->steps[static_cast<std::size_t>(stepIndex_)];
        platform_.StartThread([this, &step]() noexcept { RunStepThread(step); });
    } else {
        if (closeRequested_) {
            platform_.Quit();
        }
        ReportRunEnd(runStartClock_, platform_.Console());
        running_ = false;
        UpdateMenus();
    }
    ++stepIndex_;
}

void MainWindowLogic::RunStepThread(const ProcessStep& step) {
    TraceThread("RunStepThread", platform_);
    platform_.MakeContextCurrent();
    ExecuteStepWithReport(*model_, step, platform_.Console());
    platform_.GiveUpContext();
    platform_.SendStepDone(step);
}

void MainWindowLogic::RunStepDone(const ProcessStep& step) {
    TraceThread("RunStepDone", platform_);
    platform_.MakeContextCurrent();
    CaptureStepPicture(step);
    RunNext(false);
}

void MainWindowLogic::CaptureStepPicture(const ProcessStep& step) {
    StepImage image = pictureMaker_->TakePicture(*model_, step, imageCounter_);
    platform_.SetNarrowCaption(fmt::format("{:03d} {}", imageCounter_, step.description));
    pictures_.images.push_back(std::move(image));
    pictures_.currentImage = static_cast<std::int32_t>(pictures_.images.size()) - 1;
    platform_.RepaintPicture();
    ++imageCounter_;
}

}  // namespace zelmo
