#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>

namespace zelmo {

class LogConsole;
struct ProcessStep;

/// The entries of the menu bar, by their command ids.
enum class MenuEntry { RunProcess = 4, Stop = 6, About = 7, LoadGds = 8, SaveImages = 10 };

/// The fields of the status bar that change.
enum class StatusField { GdsFile = 1, ProcessFile = 3 };

/// What a dialog that asks for an existing file shows.
struct FileQuestion {
    std::wstring title;             ///< "Open GDS file"
    std::wstring filterName;        ///< "GDS Files (*.gds)"
    std::wstring pattern;           ///< "*.gds"
    std::wstring defaultExtension;  ///< "gds"
};

/// What the main window's logic asks of a desktop. All of it happens on the user interface thread,
/// but for the three operations that a worker calls too: MakeContextCurrent, GiveUpContext and
/// SendStepDone.
class Platform {
public:
    virtual ~Platform() = default;

    /// Binds the program's one GL context to the calling thread.
    virtual void MakeContextCurrent() = 0;
    virtual void GiveUpContext() = 0;
    /// Whether the calling thread has the context.
    virtual bool HasContext() const = 0;

    /// Starts a thread that nobody joins.
    virtual void StartThread(std::function<void()> body) = 0;
    /// Calls MainWindowLogic::RunStepDone on the user interface thread; the calling worker stays
    /// blocked until it has returned.
    virtual void SendStepDone(const ProcessStep& step) = 0;
    virtual std::uint64_t ThreadNumber() const = 0;

    /// Repaints the picture before it returns.
    virtual void RepaintPicture() = 0;
    /// Repaints the whole window before it returns.
    virtual void RepaintWindow() = 0;

    virtual void SetCaption(const std::wstring& text) = 0;
    /// The same for text in the process file's bytes.
    virtual void SetNarrowCaption(const std::string& text) = 0;
    virtual void EnableMenuEntry(MenuEntry entry, bool enabled) = 0;
    virtual void RedrawMenu() = 0;
    virtual void SetStatusText(StatusField field, const std::wstring& text) = 0;

    virtual LogConsole* Console() = 0;
    virtual void ClearConsole() = 0;

    /// Asks for an existing file; nothing if the user gives none.
    virtual std::optional<std::filesystem::path> AskForFile(const FileQuestion& question) = 0;
    virtual void ShowMessage(const std::wstring& text, const std::wstring& caption) = 0;

    /// Ends the message loop.
    virtual void Quit() = 0;
};

}  // namespace zelmo
