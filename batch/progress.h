#pragma once

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>

namespace zelmo {

/// The text without control characters, cut so that it fits a line of a terminal of this many
/// columns.
std::string FitToTerminal(std::string_view text, int columns);

/// "step 3 of 30: oxide deposition, 12 s", cut so that it fits a terminal of this many columns.
/// Control characters of the description become blanks.
std::string ProgressLine(std::size_t step, std::size_t count, std::string_view description,
                         std::int32_t elapsedMilliseconds, int columns);

/// One line on standard error that tells where a run stands, kept up to date by a thread of its
/// own. It leaves no trace when it goes. On anything but a terminal it shows nothing.
class Progress {
public:
    /// `columns` of the terminal; 0 shows nothing.
    explicit Progress(int columns);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// Shows that a step is at work, numbered from 1; `description` in UTF-8.
    void BeginStep(std::size_t step, std::size_t count, std::string description);
    /// Takes the line away.
    void End();
    /// Takes the line away while `write` writes to the terminal.
    void Interrupt(const std::function<void()>& write);

private:
    void Tick();
    void Draw();
    void Wipe();

    const int columns_;
    std::mutex mutex_;
    std::condition_variable wake_;
    std::size_t step_ = 0;  ///< 0: no line
    std::size_t count_ = 0;
    std::string description_;
    std::int32_t start_ = 0;
    bool ending_ = false;
    std::thread ticker_;
};

}  // namespace zelmo
