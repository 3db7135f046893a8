#include "batch/progress.h"

#include <fmt/format.h>

#include <chrono>
#include <cstdio>
#include <new>
#include <utility>

#include "base/clock.h"

namespace zelmo {

namespace {

constexpr std::chrono::milliseconds refreshInterval(500);

bool StartsCharacter(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0u) != 0x80u;
}

/// The first `count` characters of a UTF-8 text.
std::string_view FirstCharacters(std::string_view text, std::size_t count) {
    std::size_t length = 0;
    for (; length < text.size(); ++length) {
        if (StartsCharacter(text[length]) && count-- == 0) {
            break;
        }
    }
    return text.substr(0, length);
}

std::string WithoutControls(std::string_view text) {
    std::string plain(text);
    for (char& character : plain) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte < 0x20 || byte == 0x7F) {
            character = ' ';
        }
    }
    return plain;
}

void Show(const std::string& text) {
    std::fputs(text.c_str(), stderr);
    std::fflush(stderr);
}

}  // namespace

std::string FitToTerminal(std::string_view text, int columns) {
    // The last column stays free: some terminals begin a new line there.
    const std::size_t room = columns > 1 ? static_cast<std::size_t>(columns - 1) : 0;
    return std::string(FirstCharacters(WithoutControls(text), room));
}

std::string ProgressLine(std::size_t step, std::size_t count, std::string_view description,
                         std::int32_t elapsedMilliseconds, int columns) {
    const std::string head = fmt::format("step {} of {}: ", step, count);
    const std::string tail = fmt::format(", {} s", elapsedMilliseconds / 1000);
    const int room = columns - 1 - static_cast<int>(head.size() + tail.size());
    const std::string text = WithoutControls(description);
    const auto shown = FirstCharacters(text, room > 0 ? static_cast<std::size_t>(room) : 0);
    return FitToTerminal(fmt::format("{}{}{}", head, shown, tail), columns);
}

Progress::Progress(int columns) : columns_(columns), start_(ElapsedMilliseconds()) {
    if (columns_ > 0) {
        ticker_ = std::thread(&Progress::Tick, this);
    }
}

Progress::~Progress() {
    if (!ticker_.joinable()) {
        return;
    }
    End();
    {
        const std::lock_guard lock(mutex_);
        ending_ = true;
    }
    wake_.notify_one();
    ticker_.join();
}

void Progress::BeginStep(std::size_t step, std::size_t count, std::string description) {
    const std::lock_guard lock(mutex_);
    Wipe();
    step_ = step;
    count_ = count;
    description_ = std::move(description);
    Draw();
}

void Progress::End() {
    const std::lock_guard lock(mutex_);
    Wipe();
    step_ = 0;
}

void Progress::Interrupt(const std::function<void()>& write) {
    const std::lock_guard lock(mutex_);
    Wipe();
    write();
    Draw();
}

void Progress::Tick() {
    std::unique_lock lock(mutex_);
    while (!wake_.wait_for(lock, refreshInterval, [this] { return ending_; })) {
        try {
            Draw();
        } catch (const std::bad_alloc&) {
            // A run that is short of memory can do without this line for a while.
        }
    }
}

void Progress::Draw() {
    if (columns_ > 0 && step_ > 0) {
        const std::int32_t elapsed = ElapsedMilliseconds() - start_;
        Show(fmt::format("\r{}", ProgressLine(step_, count_, description_, elapsed, columns_)));
    }
}

void Progress::Wipe() {
    if (columns_ > 0 && step_ > 0) {
        Show(fmt::format("\r{:{}}\r", "", columns_ - 1));
    }
}

}  // namespace zelmo
