#pragma once

#include <windows.h>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "tests/desktop/win32/probe_protocol.h"

namespace zelmo {

inline constexpr WORD runCommand = 4;
inline constexpr WORD stopCommand = 6;
inline constexpr WORD aboutCommand = 7;
inline constexpr WORD loadCommand = 8;
inline constexpr WORD saveCommand = 10;

inline constexpr int statusBarId = 1;
inline constexpr int consoleId = 2;
inline constexpr int renderWindowId = 3;

/// Waits until `condition` holds. Throws std::runtime_error with `what` after a minute or two.
void WaitFor(const std::string& what, const std::function<bool()>& condition);

/// A picture as a window shows it.
struct ShownPicture {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> pixels;  ///< BGRA, bottom row first
};

/// zelmo.exe, started in a folder of its own, and worked from outside: with commands, keys and
/// dialogs as its user would. Ended by force with the object if it still runs. All waits throw
/// std::runtime_error when nothing comes.
class DesktopProgram {
public:
    /// Starts it with `folder` as its current directory, on the calling thread's desktop; nothing
    /// is waited for.
    explicit DesktopProgram(const std::filesystem::path& folder);
    ~DesktopProgram();
    DesktopProgram(const DesktopProgram&) = delete;
    DesktopProgram& operator=(const DesktopProgram&) = delete;

    /// Waits for the main window on the screen and loads the probe into the program.
    void WaitForWindow();
    HWND Window() const { return window_; }
    HWND Child(int id) const { return GetDlgItem(window_, id); }
    /// The main window in whatever state it is, or null.
    HWND FindMainWindow() const;
    HANDLE Process() const { return process_; }
    DWORD ProcessId() const { return processId_; }

    /// Chooses an entry of the menu, as a click does.
    void Command(WORD id) const;
    void Key(WPARAM key) const;
    /// Presses a key and waits for the caption.
    void KeyTo(WPARAM key, const std::wstring& caption) const;
    std::wstring Caption() const;
    void WaitForCaption(const std::wstring& caption) const;

    /// A file dialog or message box of the program.
    HWND WaitForDialog(const std::wstring& title) const;
    /// The same, or null.
    HWND FindDialog(const std::wstring& title) const;
    /// Types the path into a file dialog and confirms it.
    void ChooseFile(HWND dialog, const std::filesystem::path& file) const;
    void Cancel(HWND dialog) const;
    /// The text in a message box.
    static std::wstring MessageText(HWND box);
    void CloseMessage(HWND box) const;

    /// Commands with their dialogs; each returns when the command is over.
    void Load(const std::filesystem::path& layout) const;
    void RunToEnd(const std::filesystem::path& process) const;
    /// Returns with the message of the step that ends as number `step`, counted since the program's
    /// start, held back: the worker waits and has given up the context.
    void RunAndHold(const std::filesystem::path& process, int step) const;
    /// Lets the held step finish.
    void Release() const;

    std::wstring ConsoleText() const;
    std::vector<std::wstring> ConsoleLines() const;
    bool HasLine(const std::wstring& text) const;
    void WaitForLine(const std::wstring& text) const;

    /// What the menu has enabled: a letter for each entry in its order, "S" save, "R" run, "T"
    /// stop, "L" load, "A" about; a dot for a grey one.
    std::string MenuStates() const;
    void WaitForMenu(const std::string& states) const;
    std::wstring StatusText(int part) const;
    ShownPicture Pixels() const;
    std::vector<int> StatusEdges() const;
    HWND Focus() const;
    ProbeObjects Objects() const;

    /// The answer to a request, in the shared memory.
    ProbeMemory& Ask(ProbeRequest request, LPARAM argument = 0) const;
    ProbeMemory& Ask(ProbeRequest request, HWND window) const;

    bool HasEnded() const;
    DWORD WaitForExit() const;

private:
    void LoadProbe();

    HANDLE process_ = nullptr;
    DWORD processId_ = 0;
    DWORD threadId_ = 0;
    HWND window_ = nullptr;
    HANDLE mapping_ = nullptr;
    ProbeMemory* memory_ = nullptr;
    HMODULE library_ = nullptr;
    HHOOK hook_ = nullptr;
    UINT probeMessage_ = 0;
};

}  // namespace zelmo
