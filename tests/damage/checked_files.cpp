#include "tests/damage/checked_files.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <ctime>
#include <stdexcept>

#include "batch/batch_run.h"
#include "tests/support/allocated_memory.h"

namespace zelmo {

namespace {

/// Takes what is written to standard error into memory, for as long as it lives.
class ErrorCapture {
public:
    ErrorCapture() : before_(dup(STDERR_FILENO)), taken_(memfd_create("errors", MFD_CLOEXEC)) {
        if (before_ < 0 || taken_ < 0 || dup2(taken_, STDERR_FILENO) < 0) {
            throw std::runtime_error("standard error cannot be taken");
        }
    }
    ~ErrorCapture() {
        dup2(before_, STDERR_FILENO);
        close(before_);
        close(taken_);
    }
    ErrorCapture(const ErrorCapture&) = delete;
    ErrorCapture& operator=(const ErrorCapture&) = delete;

    std::string Text() const {
        std::fflush(stderr);
        std::string text(static_cast<std::size_t>(lseek(taken_, 0, SEEK_END)), '\0');
        if (pread(taken_, text.data(), text.size(), 0) != static_cast<ssize_t>(text.size())) {
            throw std::runtime_error("standard error cannot be read");
        }
        return text;
    }

private:
    int before_;
    int taken_;
};

}  // namespace

CheckOutcome CheckFiles(const std::filesystem::path& layout, const std::filesystem::path& process) {
    BatchOptions options;
    options.layout = layout;
    options.process = process;
    options.checkOnly = true;
    options.quiet = true;
    options.assets = std::filesystem::current_path();
    CheckOutcome outcome;
    const ErrorCapture capture;
    WatchMemory();
    const std::clock_t start = std::clock();
    outcome.status = static_cast<int>(RunBatch(options));
    outcome.seconds = static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
    outcome.peakBytes = PeakMemory();
    outcome.errors = capture.Text();
    return outcome;
}

}  // namespace zelmo
