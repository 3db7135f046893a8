#include "desktop/null/null_platform.h"

#include <utility>

#include "base/text.h"
#include "desktop/main_window_logic.h"

namespace zelmo {

NullPlatform::NullPlatform() {
    for (const MenuEntry entry : {MenuEntry::RunProcess, MenuEntry::Stop, MenuEntry::About,
                                  MenuEntry::LoadGds, MenuEntry::SaveImages}) {
        menu_[entry] = true;
    }
    status_[StatusField::GdsFile] = L"Not loaded";
    status_[StatusField::ProcessFile] = L"Not loaded";
    MakeContextCurrent();
}

NullPlatform::~NullPlatform() {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return liveWorkers_ == 0; });
}

void NullPlatform::Post(std::function<void()> action) {
    const std::lock_guard lock(mutex_);
    queue_.push_back(std::move(action));
    changed_.notify_all();
}

void NullPlatform::AnswerNextFileQuestion(std::optional<std::filesystem::path> path) {
    answers_.push_back(std::move(path));
}

void NullPlatform::ObserveLines(std::function<void(const std::wstring&)> observer) {
    const std::lock_guard lock(console_.mutex);
    console_.observer = std::move(observer);
}

bool NullPlatform::RunLoopUntil(const std::function<bool()>& done) {
    while (!done()) {
        if (quit_) {
            return false;
        }
        std::function<void()> message;
        {
            std::unique_lock lock(mutex_);
            changed_.wait(lock, [this] { return !queue_.empty(); });
            message = std::move(queue_.front());
            queue_.pop_front();
        }
        message();
    }
    return true;
}

std::vector<std::wstring> NullPlatform::ConsoleLines() {
    const std::lock_guard lock(console_.mutex);
    return console_.lines;
}

int NullPlatform::ContextConflicts() {
    const std::lock_guard lock(mutex_);
    return contextConflicts_;
}

void NullPlatform::MakeContextCurrent() {
    const std::lock_guard lock(mutex_);
    const std::thread::id self = std::this_thread::get_id();
    if (contextOwner_ != std::thread::id() && contextOwner_ != self) {
        ++contextConflicts_;
    }
    contextOwner_ = self;
}

void NullPlatform::GiveUpContext() {
    const std::lock_guard lock(mutex_);
    contextConflicts_ += contextOwner_ != std::this_thread::get_id() ? 1 : 0;
    contextOwner_ = std::thread::id();
}

bool NullPlatform::HasContext() const {
    const std::lock_guard lock(mutex_);
    return contextOwner_ == std::this_thread::get_id();
}

void NullPlatform::StartThread(std::function<void()> body) {
    {
        const std::lock_guard lock(mutex_);
        ++liveWorkers_;
    }
    std::thread([this, body = std::move(body)] {
        body();
        const std::lock_guard lock(mutex_);
        --liveWorkers_;
        changed_.notify_all();
    }).detach();
}

void NullPlatform::SendStepDone(const ProcessStep& step) {
    bool handled = false;
    Post([this, &step, &handled] {
        window_->RunStepDone(step);
        const std::lock_guard lock(mutex_);
        handled = true;
        changed_.notify_all();
    });
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [&handled] { return handled; });
}

std::uint64_t NullPlatform::ThreadNumber() const {
    return std::hash<std::thread::id>()(std::this_thread::get_id());
}

void NullPlatform::SetNarrowCaption(const std::string& text) {
    captions_.push_back(WidenBytes(text));
}

void NullPlatform::SetStatusText(StatusField field, const std::wstring& text) {
    status_[field] = text;
}

void NullPlatform::ClearConsole() {
    const std::lock_guard lock(console_.mutex);
    console_.lines.clear();
}

std::optional<std::filesystem::path> NullPlatform::AskForFile(const FileQuestion& question) {
    questions_.push_back(question);
    if (answers_.empty()) {
        return std::nullopt;
    }
    auto answer = std::move(answers_.front());
    answers_.pop_front();
    return answer;
}

void NullPlatform::ShowMessage(const std::wstring& text, const std::wstring& caption) {
    messages_.push_back({text, caption});
}

void NullPlatform::Lines::AppendLine(std::wstring line) {
    std::function<void(const std::wstring&)> notify;
    {
        const std::lock_guard lock(mutex);
        lines.push_back(line);
        notify = observer;
    }
    if (notify) {
        notify(line);
    }
}

}  // namespace zelmo
