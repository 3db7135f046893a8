#pragma once

#include <atomic>
#include <exception>

// How long work is ended before its end: whoever wants it to sets a flag, and the work looks at it
// now and then. Work that nobody may end pays next to nothing for that.

namespace zelmo {

/// Thrown by work that was ended.
class Stopped : public std::exception {
public:
    const char* what() const noexcept override { return "the work was stopped"; }
};

/// While one is there, the work of its thread, and what ForRowBands shares out for it, ends with
/// Stopped soon after the flag is set.
class StopScope {
public:
    /// The flag outlives the scope. Null: nothing ends the work.
    explicit StopScope(const std::atomic<bool>* flag);
    ~StopScope();
    StopScope(const StopScope&) = delete;
    StopScope& operator=(const StopScope&) = delete;

private:
    const std::atomic<bool>* outer_;
};

/// The flag of the innermost scope of this thread, or null.
const std::atomic<bool>* StopFlag();

/// Throws Stopped if the flag of this thread's work is set.
void EndIfStopped();

}  // namespace zelmo
