#include "tests/desktop/win32/desktop_program.h"

#include <algorithm>
#include <cwchar>
#include <stdexcept>

#include "base/text.h"

namespace zelmo {

namespace {

constexpr ULONGLONG patience = 100000;  // milliseconds
constexpr DWORD pollPause = 5;
constexpr int fileNameCombo = 0x47C;
constexpr int fileNameEdit = 0x480;

std::wstring WindowText(HWND window) {
    const auto length = SendMessageW(window, WM_GETTEXTLENGTH, 0, 0);
    std::wstring text(static_cast<std::size_t>(length) + 1, L'\0');
    const auto copied =
        SendMessageW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()));
    text.resize(static_cast<std::size_t>(copied));
    return text;
}

std::wstring ClassOf(HWND window) {
    wchar_t name[64] = {};
    GetClassNameW(window, name, std::size(name));
    return name;
}

/// A look through windows, which the system hands over one by one.
struct WindowSearch {
    std::function<bool(HWND)> wanted;
    HWND found = nullptr;

    /// Takes a window, and says whether to go on.
    static BOOL CALLBACK Look(HWND window, LPARAM data) {
        auto& search = *reinterpret_cast<WindowSearch*>(data);
        if (search.wanted(window)) {
            search.found = window;
        }
        return search.found == nullptr;
    }
};

/// The first window of a thread that `wanted` takes, or null.
HWND FindThreadWindow(DWORD threadId, std::function<bool(HWND)> wanted) {
    WindowSearch search{std::move(wanted)};
    EnumThreadWindows(threadId, WindowSearch::Look, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

/// The first child, at any depth, that `wanted` takes, or null.
HWND FindChild(HWND parent, std::function<bool(HWND)> wanted) {
    WindowSearch search{std::move(wanted)};
    EnumChildWindows(parent, WindowSearch::Look, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

HWND FileNameField(HWND dialog) {
    const HWND edit = GetDlgItem(dialog, fileNameEdit);
    return edit != nullptr ? edit : GetDlgItem(dialog, fileNameCombo);
}

}  // namespace

void WaitFor(const std::string& what, const std::function<bool()>& condition) {
    const ULONGLONG start = GetTickCount64();
    while (!condition()) {
        if (GetTickCount64() - start > patience) {
            throw std::runtime_error("waited in vain for " + what);
        }
        Sleep(pollPause);
    }
}

DesktopProgram::DesktopProgram(const std::filesystem::path& folder) {
    const std::filesystem::path program = folder / ZELMO_DESKTOP_FILE;
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    if (!CreateProcessW(program.c_str(), nullptr, nullptr, nullptr, FALSE, 0, nullptr,
                        folder.c_str(), &startup, &process)) {
        throw std::runtime_error("zelmo.exe cannot be started");
    }
    CloseHandle(process.hThread);
    process_ = process.hProcess;
    processId_ = process.dwProcessId;
    threadId_ = process.dwThreadId;
}

DesktopProgram::~DesktopProgram() {
    if (!HasEnded()) {
        TerminateProcess(process_, 99);
        WaitForSingleObject(process_, 10000);
    }
    if (hook_ != nullptr) {
        UnhookWindowsHookEx(hook_);
    }
    if (library_ != nullptr) {
        FreeLibrary(library_);
    }
    if (memory_ != nullptr) {
        UnmapViewOfFile(memory_);
        CloseHandle(mapping_);
    }
    CloseHandle(process_);
}

HWND DesktopProgram::FindMainWindow() const {
    return FindThreadWindow(threadId_,
                            [](HWND window) { return ClassOf(window) == L"Main Window Class"; });
}

void DesktopProgram::WaitForWindow() {
    WaitFor("the main window", [this] {
        if (HasEnded()) {
            throw std::runtime_error("zelmo.exe has ended at start");
        }
        window_ = FindMainWindow();
        return window_ != nullptr && IsWindowVisible(window_);
    });
    LoadProbe();
}

void DesktopProgram::LoadProbe() {
    wchar_t name[64];
    std::swprintf(name, std::size(name), probeMemoryName, processId_);
    mapping_ = CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0,
                                  sizeof(ProbeMemory), name);
    memory_ = static_cast<ProbeMemory*>(MapViewOfFile(mapping_, FILE_MAP_ALL_ACCESS, 0, 0, 0));
    library_ = LoadLibraryW((std::filesystem::current_path() / ZELMO_PROBE_FILE).c_str());
    if (memory_ == nullptr || library_ == nullptr) {
        throw std::runtime_error("the probe cannot be loaded");
    }
    const auto procedure = reinterpret_cast<HOOKPROC>(
        reinterpret_cast<void*>(GetProcAddress(library_, probeHookName)));
    hook_ = SetWindowsHookExW(WH_CALLWNDPROC, procedure, library_, threadId_);
    probeMessage_ = RegisterWindowMessageW(probeMessageName);
    Ask(ProbeRequest::Hello);
    if (memory_->attached == 0) {
        throw std::runtime_error("the probe does not answer");
    }
}

ProbeMemory& DesktopProgram::Ask(ProbeRequest request, LPARAM argument) const {
    SendMessageW(window_, probeMessage_, static_cast<WPARAM>(request), argument);
    return *memory_;
}

ProbeMemory& DesktopProgram::Ask(ProbeRequest request, HWND window) const {
    return Ask(request, reinterpret_cast<LPARAM>(window));
}

void DesktopProgram::Command(WORD id) const {
    PostMessageW(window_, WM_COMMAND, MAKEWPARAM(id, 0), 0);
}

void DesktopProgram::Key(WPARAM key) const {
    PostMessageW(window_, WM_KEYDOWN, key, 1);
    PostMessageW(window_, WM_KEYUP, key, 1);
}

void DesktopProgram::KeyTo(WPARAM key, const std::wstring& caption) const {
    Key(key);
    WaitForCaption(caption);
}

std::wstring DesktopProgram::Caption() const {
    return WindowText(window_);
}

void DesktopProgram::WaitForCaption(const std::wstring& caption) const {
    WaitFor("the caption " + Utf8FromWide(caption),
            [&] { return HasEnded() || Caption() == caption; });
}

HWND DesktopProgram::FindDialog(const std::wstring& title) const {
    return FindThreadWindow(threadId_, [&](HWND window) {
        return IsWindowVisible(window) && ClassOf(window) == L"#32770" &&
               WindowText(window) == title;
    });
}

HWND DesktopProgram::WaitForDialog(const std::wstring& title) const {
    HWND dialog = nullptr;
    WaitFor("the dialog " + Utf8FromWide(title), [&] {
        if (HasEnded()) {
            throw std::runtime_error("zelmo.exe has ended");
        }
        dialog = FindDialog(title);
        return dialog != nullptr;
    });
    return dialog;
}

void DesktopProgram::ChooseFile(HWND dialog, const std::filesystem::path& file) const {
    WaitFor("the field of the file's name", [&] { return FileNameField(dialog) != nullptr; });
    const HWND field = FileNameField(dialog);
    WaitFor("the typed name", [&] {
        SendMessageW(field, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(file.c_str()));
        return WindowText(field) == file.wstring();
    });
    PostMessageW(dialog, WM_COMMAND, IDOK, 0);
    WaitFor("the end of the file dialog", [&] { return !IsWindow(dialog); });
}

void DesktopProgram::Cancel(HWND dialog) const {
    PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
    WaitFor("the end of the dialog", [&] { return !IsWindow(dialog); });
}

std::wstring DesktopProgram::MessageText(HWND box) {
    std::wstring text;
    FindChild(box, [&](HWND child) {
        if (ClassOf(child) == L"Static" && !WindowText(child).empty()) {
            text = WindowText(child);
        }
        return false;
    });
    return text;
}

void DesktopProgram::CloseMessage(HWND box) const {
    const HWND button = FindChild(
        box, [](HWND child) { return ClassOf(child) == L"Button" && IsWindowVisible(child); });
    PostMessageW(box, WM_COMMAND, static_cast<WPARAM>(GetDlgCtrlID(button)),
                 reinterpret_cast<LPARAM>(button));
    WaitFor("the end of the message box", [&] { return !IsWindow(box); });
}

void DesktopProgram::Load(const std::filesystem::path& layout) const {
    Command(loadCommand);
    ChooseFile(WaitForDialog(L"Open GDS file"), layout);
    WaitFor("the end of the load", [this] { return MenuStates().find('L') != std::string::npos; });
}

void DesktopProgram::RunToEnd(const std::filesystem::path& process) const {
    Command(runCommand);
    ChooseFile(WaitForDialog(L"Open process file"), process);
    WaitFor("the end of the run", [this] { return MenuStates().find('R') != std::string::npos; });
}

void DesktopProgram::RunAndHold(const std::filesystem::path& process, int step) const {
    memory_->holdAtStep = step;
    Command(runCommand);
    ChooseFile(WaitForDialog(L"Open process file"), process);
    WaitFor("the end of step " + std::to_string(step), [this] { return memory_->held != 0; });
}

void DesktopProgram::Release() const {
    memory_->release = 1;
}

std::wstring DesktopProgram::ConsoleText() const {
    return WindowText(Child(consoleId));
}

std::vector<std::wstring> DesktopProgram::ConsoleLines() const {
    const std::wstring text = ConsoleText();
    std::vector<std::wstring> lines;
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = std::min(text.find(L"\r\n", start), text.size());
        lines.push_back(text.substr(start, end - start));
        start = end + 2;
    }
    return lines;
}

bool DesktopProgram::HasLine(const std::wstring& text) const {
    const std::vector<std::wstring> lines = ConsoleLines();
    return std::find(lines.begin(), lines.end(), text) != lines.end();
}

void DesktopProgram::WaitForLine(const std::wstring& text) const {
    WaitFor("the line " + Utf8FromWide(text), [&] { return HasLine(text); });
}

std::string DesktopProgram::MenuStates() const {
    const ProbeMemory& memory = Ask(ProbeRequest::Menu);
    const std::string letters = "SRTLA";
    std::string states;
    for (int i = 0; i < memory.menuItems; ++i) {
        const bool grey = (memory.menu[i].state & (MF_GRAYED | MF_DISABLED)) != 0;
        states += grey ? '.' : letters.at(static_cast<std::size_t>(i));
    }
    return states;
}

void DesktopProgram::WaitForMenu(const std::string& states) const {
    WaitFor("the menu " + states, [&] { return MenuStates() == states; });
}

std::wstring DesktopProgram::StatusText(int part) const {
    return Ask(ProbeRequest::StatusText, static_cast<LPARAM>(part)).text;
}

ShownPicture DesktopProgram::Pixels() const {
    const ProbeMemory& memory = Ask(ProbeRequest::Pixels, Child(renderWindowId));
    ShownPicture picture{memory.width, memory.height, {}};
    const auto bytes = static_cast<std::ptrdiff_t>(memory.width) * memory.height * 4;
    picture.pixels.assign(memory.pixels, memory.pixels + bytes);
    return picture;
}

std::vector<int> DesktopProgram::StatusEdges() const {
    const ProbeMemory& memory = Ask(ProbeRequest::StatusEdges);
    return {memory.edges, memory.edges + memory.number};
}

HWND DesktopProgram::Focus() const {
    return Ask(ProbeRequest::Focus).window;
}

ProbeObjects DesktopProgram::Objects() const {
    return Ask(ProbeRequest::Objects).objects;
}

bool DesktopProgram::HasEnded() const {
    return WaitForSingleObject(process_, 0) == WAIT_OBJECT_0;
}

DWORD DesktopProgram::WaitForExit() const {
    WaitFor("the end of zelmo.exe", [this] { return HasEnded(); });
    DWORD code = 0;
    GetExitCodeProcess(process_, &code);
    return code;
}

}  // namespace zelmo
