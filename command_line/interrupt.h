#pragma once

#include <functional>
#include <memory>

namespace zelmo {

/// Keeps the user's wish to end the program (Ctrl-C, or the end of the terminal or the session)
/// from killing it. To be made before any thread is started; one at a time.
class Interrupt {
public:
    Interrupt();
    ~Interrupt();
    Interrupt(const Interrupt&) = delete;
    Interrupt& operator=(const Interrupt&) = delete;

    /// From now on the wish makes this run once, on a thread of its own. To be called once.
    void Then(std::function<void()> action);

private:
    struct Waiting;
    std::unique_ptr<Waiting> waiting_;
};

}  // namespace zelmo
