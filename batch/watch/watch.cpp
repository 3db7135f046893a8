#include "batch/watch/watch.h"

#include <fmt/format.h>

#include <chrono>
#include <exception>
#include <string>
#include <thread>
#include <utility>

#include "batch/options.h"
#include "batch/reporting.h"
#include "batch/watch/watched_file.h"
#include "command_line/reasons.h"

namespace zelmo {

namespace {

/// Between two looks at the files.
constexpr std::chrono::milliseconds pause(10);
/// Programs that save in pieces are given so many pauses to come to an end.
constexpr int mostPieces = 50;

/// The inputs of a run.
struct Inputs {
    explicit Inputs(const BatchOptions& options)
        : layout(options.layout), process(options.process) {}

    bool Changed() { return layout.Changed() || process.Changed(); }

    WatchedFile layout;
    WatchedFile process;
};

/// Waits until something is saved, and has been.
void WaitForSave(const BatchOptions& options, Inputs& inputs) {
    while (!inputs.Changed()) {
        std::this_thread::sleep_for(pause);
    }
    Inputs now(options);
    for (int piece = 0; piece < mostPieces; ++piece) {
        now.layout.Look();
        now.process.Look();
        std::this_thread::sleep_for(pause);
        if (!now.Changed()) {
            return;
        }
    }
}

WatchedOutcome RunOrTellWhyNot(const std::function<WatchedOutcome(const WatchedChange&)>& run,
                               const WatchedChange& change) {
    try {
        return run(change);
    } catch (const std::exception& error) {
        return {{ExitStatus::Other, error.what()}};
    }
}

}  // namespace

Outcome Watch(const BatchOptions& options, Reporting& reporting,
              const std::function<WatchedOutcome(const WatchedChange&)>& run) {
    Inputs inputs(options);
    for (;;) {
        const bool layoutToo = inputs.layout.Look();
        inputs.process.Look();
        WatchedOutcome done =
            RunOrTellWhyNot(run, {layoutToo, [&inputs] { return inputs.Changed(); }});
        if (done.isHopeless) {
            return std::move(done.outcome);
        }
        reporting.progress.End();
        if (!done.outcome.message.empty()) {
            reporting.Failure(done.outcome);
        }
        if (!options.quiet && !inputs.Changed()) {
            reporting.Error(fmt::format("watching {} and {}; Ctrl-C ends it",
                                        TextOf(options.process), TextOf(options.layout)));
        }
        WaitForSave(options, inputs);
    }
}

}  // namespace zelmo
