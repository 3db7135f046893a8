#include "command_line/interrupt.h"

#include <csignal>
#include <thread>
#include <utility>

#include <pthread.h>

namespace zelmo {

namespace {

/// What the thread is told by when nobody wants the program to end any more.
constexpr int noMore = SIGUSR1;

sigset_t Signals() {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, noMore}) {
        sigaddset(&signals, signal);
    }
    return signals;
}

}  // namespace

struct Interrupt::Waiting {
    sigset_t before{};
    std::thread thread;
};

Interrupt::Interrupt() : waiting_(std::make_unique<Waiting>()) {
    // Threads inherit what is blocked: the one that waits is the only one that sees the signals.
    const sigset_t signals = Signals();
    pthread_sigmask(SIG_BLOCK, &signals, &waiting_->before);
}

Interrupt::~Interrupt() {
    if (waiting_->thread.joinable()) {
        pthread_kill(waiting_->thread.native_handle(), noMore);
        waiting_->thread.join();
    }
    pthread_sigmask(SIG_SETMASK, &waiting_->before, nullptr);
}

void Interrupt::Then(std::function<void()> action) {
    waiting_->thread = std::thread([action = std::move(action)] {
        const sigset_t signals = Signals();
        int signal = noMore;
        if (sigwait(&signals, &signal) == 0 && signal != noMore) {
            action();
        }
    });
}

}  // namespace zelmo
