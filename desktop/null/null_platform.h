#pragma once

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <filesystem>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "base/log_console.h"
#include "desktop/platform.h"

namespace zelmo {

class MainWindowLogic;

/// A desktop without any window: it answers dialogs from a list, notes what a user would see, and
/// has a message loop of its own. The thread that made it is its user interface thread.
class NullPlatform : public Platform {
public:
    NullPlatform();
    /// Waits for the workers that are still on their way out.
    ~NullPlatform() override;

    /// Who gets the messages; to be set before the loop runs.
    void SetWindow(MainWindowLogic* window) { window_ = window; }

    // What a user would do.

    /// Has `action` run by the message loop; may be called from any thread.
    void Post(std::function<void()> action);
    void AnswerNextFileQuestion(std::optional<std::filesystem::path> path);
    /// Calls `observer` with every line that is written to the console, on the writing thread.
    void ObserveLines(std::function<void(const std::wstring&)> observer);
    /// Runs messages until `done` holds, looking at it after each. False when the loop was ended
    /// by a quit before.
    bool RunLoopUntil(const std::function<bool()>& done);

    // What a user would see.
    struct Message {
        std::wstring text;
        std::wstring caption;
    };
    bool Enabled(MenuEntry entry) const { return menu_.at(entry); }
    const std::vector<FileQuestion>& FileQuestions() const { return questions_; }
    const std::vector<Message>& Messages() const { return messages_; }
    const std::vector<std::wstring>& Captions() const { return captions_; }
    std::wstring StatusText(StatusField field) const { return status_.at(field); }
    std::vector<std::wstring> ConsoleLines();
    int PictureRepaints() const { return pictureRepaints_; }
    int WindowRepaints() const { return windowRepaints_; }
    bool QuitPosted() const { return quit_; }
    /// How often the context was taken while another thread had it; 0 when all is well.
    int ContextConflicts();

    void MakeContextCurrent() override;
    void GiveUpContext() override;
    bool HasContext() const override;
    void StartThread(std::function<void()> body) override;
    void SendStepDone(const ProcessStep& step) override;
    std::uint64_t ThreadNumber() const override;
    void RepaintPicture() override { ++pictureRepaints_; }
    void RepaintWindow() override { ++windowRepaints_; }
    void SetCaption(const std::wstring& text) override { captions_.push_back(text); }
    void SetNarrowCaption(const std::string& text) override;
    void EnableMenuEntry(MenuEntry entry, bool enabled) override { menu_[entry] = enabled; }
    void RedrawMenu() override {}
    void SetStatusText(StatusField field, const std::wstring& text) override;
    LogConsole* Console() override { return &console_; }
    void ClearConsole() override;
    std::optional<std::filesystem::path> AskForFile(const FileQuestion& question) override;
    void ShowMessage(const std::wstring& text, const std::wstring& caption) override;
    void Quit() override { quit_ = true; }

private:
    class Lines : public LogConsole {
    public:
        std::mutex mutex;
        std::vector<std::wstring> lines;
        std::function<void(const std::wstring&)> observer;

    protected:
        void AppendLine(std::wstring line) override;
    };

    MainWindowLogic* window_ = nullptr;
    Lines console_;
    std::map<MenuEntry, bool> menu_;
    std::map<StatusField, std::wstring> status_;
    std::vector<FileQuestion> questions_;
    std::deque<std::optional<std::filesystem::path>> answers_;
    std::vector<Message> messages_;
    std::vector<std::wstring> captions_;
    int pictureRepaints_ = 0;
    int windowRepaints_ = 0;
    bool quit_ = false;

    mutable std::mutex mutex_;  ///< of all that follows
    std::condition_variable changed_;
    std::deque<std::function<void()>> queue_;
    std::thread::id contextOwner_;
    int contextConflicts_ = 0;
    int liveWorkers_ = 0;
};

}  // namespace zelmo
