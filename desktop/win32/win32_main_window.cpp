#include "desktop/win32/win32_main_window.h"

#include <commctrl.h>
#include <commdlg.h>

#include <algorithm>
#include <string>
#include <thread>
#include <utility>

#include "base/text.h"
#include "desktop/picture_maker.h"

namespace zelmo {

namespace {

constexpr int statusBarId = 1;
constexpr int consoleId = 2;
constexpr int renderWindowId = 3;
constexpr UINT stepDoneMessage = WM_USER + 2;

std::wstring FilterText(const FileQuestion& question) {
    // The text's own end is the list's second NUL.
    return question.filterName + L'\0' + question.pattern + L'\0';
}

}  // namespace

Win32MainWindow::Win32MainWindow() : logic_(*this), renderWindow_(logic_.Pictures()) {}

Win32MainWindow::~Win32MainWindow() = default;

LRESULT Win32MainWindow::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    const LRESULT result = Dispatch(message, wParam, lParam);
    if (console_) {
        console_->Flush();
    }
    return result;
}

LRESULT Win32MainWindow::Dispatch(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_CREATE:
            return CreateContents() ? 0 : -1;
        case WM_DESTROY:
            PostQuitMessage(0);
            return 0;
        case WM_SIZE:
            LayOut();
            return 0;
        case WM_KILLFOCUS:
        case WM_LBUTTONDOWN:
            // The keyboard stays with this window, so that the arrow keys always reach it.
            SetFocus(hwnd);
            return 0;
        case WM_CLOSE:
            logic_.HandleClose();
            return 0;
        case WM_SETCURSOR:
            SetCursor(arrowCursor_);
            return 1;
        case WM_KEYDOWN:
            HandleKey(wParam);
            return 0;
        case WM_COMMAND:
            HandleCommand(LOWORD(wParam));
            return 0;
        case WM_CTLCOLORSTATIC:
            if (reinterpret_cast<HWND>(lParam) != consoleEdit_) {
                return 0;
            }
            SetBkColor(reinterpret_cast<HDC>(wParam), 0xFFFFFF);
            return reinterpret_cast<LRESULT>(consoleBrush_.get());
        case WM_MOUSEWHEEL:
            ForwardWheel(wParam, lParam);
            return 0;
        case WM_ENTERSIZEMOVE:
        case WM_EXITSIZEMOVE:
            return 0;
        case stepDoneMessage:
            logic_.RunStepDone(*reinterpret_cast<const ProcessStep*>(wParam));
            return 0;
        default:
            return DefWindowProcW(hwnd, message, wParam, lParam);
    }
}

void Win32MainWindow::HandleKey(WPARAM key) {
    if (key == VK_LEFT) {
        logic_.HandleLeftKey();
    } else if (key == VK_RIGHT) {
        logic_.HandleRightKey();
    }
}

void Win32MainWindow::ForwardWheel(WPARAM wParam, LPARAM lParam) {
    // A turn that the control has no use for, as with Ctrl held, it hands to its parent: here.
    if (!forwardingWheel_) {
        forwardingWheel_ = true;
        SendMessageW(consoleEdit_, WM_MOUSEWHEEL, wParam, lParam);
        forwardingWheel_ = false;
    }
}

void Win32MainWindow::HandleCommand(int id) {
    switch (static_cast<MenuEntry>(id)) {
        case MenuEntry::RunProcess:
            logic_.HandleRun();
            break;
        case MenuEntry::Stop:
            logic_.HandleStop();
            break;
        case MenuEntry::About:
            logic_.HandleAbout();
            break;
        case MenuEntry::LoadGds:
            logic_.HandleLoadGds();
            break;
        case MenuEntry::SaveImages:
            logic_.HandleSaveImages();
            break;
    }
}

bool Win32MainWindow::CreateContents() {
    consoleBrush_.reset(CreateSolidBrush(0xFFFFFF));
    CentreOnScreen();
    if (!CreateConsole() || !CreateStatusBar()) {
        return false;
    }
    CreateMenuBar();
    if (!CreateDrawing()) {
        return false;
    }
    arrowCursor_ = LoadCursorW(nullptr, IDC_ARROW);
    return true;
}

void Win32MainWindow::CentreOnScreen() {
    const int screenWidth = GetSystemMetrics(SM_CXSCREEN);
    const int screenHeight = GetSystemMetrics(SM_CYSCREEN);
    const int width = std::min(1200, screenWidth);
    const int height = std::min(800, screenHeight);
    SetWindowPos(hwnd, nullptr, (screenWidth - width) >> 1, (screenHeight - height) >> 1, width,
                 height, 0);
}

bool Win32MainWindow::CreateConsole() {
    const DWORD style = WS_CHILD | WS_VISIBLE | WS_BORDER | WS_VSCROLL | ES_READONLY |
                        ES_AUTOVSCROLL | ES_MULTILINE;
    consoleEdit_ =
        CreateWindowExW(WS_EX_CLIENTEDGE, L"Edit", nullptr, style, 0, 0, 0, 0, hwnd,
                        reinterpret_cast<HMENU>(static_cast<INT_PTR>(consoleId)), nullptr, nullptr);
    console_ = std::make_unique<EditConsole>(consoleEdit_);
    consoleFont_.reset(CreateFontW(14, 0, 0, 650, 0, FALSE, FALSE, FALSE, DEFAULT_CHARSET,
                                   OUT_OUTLINE_PRECIS, CLIP_DEFAULT_PRECIS, CLEARTYPE_QUALITY,
                                   VARIABLE_PITCH, L"Consolas"));
    if (!consoleFont_) {
        return Fail(L"Creating console window font failed");
    }
    SendMessageW(consoleEdit_, WM_SETFONT, reinterpret_cast<WPARAM>(consoleFont_.get()), TRUE);
    return true;
}

bool Win32MainWindow::CreateStatusBar() {
    statusBar_ = CreateWindowExW(0, STATUSCLASSNAMEW, nullptr, WS_CHILD | WS_VISIBLE, 0, 0, 0, 0,
                                 hwnd, reinterpret_cast<HMENU>(static_cast<INT_PTR>(statusBarId)),
                                 nullptr, nullptr);
    statusFont_.reset(
        CreateFontW(11, 0, 0, 0, 0, FALSE, FALSE, FALSE, DEFAULT_CHARSET, 0, 0, 0, 0, nullptr));
    if (!statusFont_) {
        return Fail(L"Creating status bar font failed");
    }
    SendMessageW(statusBar_, WM_SETFONT, reinterpret_cast<WPARAM>(statusFont_.get()), TRUE);
    const int rightEdges[] = {80, 600, 680, 1200};
    SendMessageW(statusBar_, SB_SETPARTS, std::size(rightEdges),
                 reinterpret_cast<LPARAM>(rightEdges));
    const wchar_t* texts[] = {L"GDS file:", L"Not loaded", L"Process file:", L"Not loaded"};
    for (WPARAM part = 0; part < std::size(texts); ++part) {
        SendMessageW(statusBar_, SB_SETTEXTW, part, reinterpret_cast<LPARAM>(texts[part]));
    }
    return true;
}

void Win32MainWindow::CreateMenuBar() {
    const HMENU menu = CreateMenu();
    const std::pair<MenuEntry, const wchar_t*> entries[] = {
        {MenuEntry::SaveImages, L"&Save images"},
        {MenuEntry::RunProcess, L"&Run Process"},
        {MenuEntry::Stop, L"&Stop"},
        {MenuEntry::LoadGds, L"&Load GDSII"},
        {MenuEntry::About, L"&About"},
    };
    for (const auto& [entry, text] : entries) {
        AppendMenuW(menu, MF_STRING, static_cast<UINT_PTR>(entry), text);
    }
    SetMenu(hwnd, menu);
}

bool Win32MainWindow::CreateDrawing() {
    if (!renderWindow_.Create(nullptr, WS_CHILD | WS_VISIBLE | WS_BORDER, hwnd, renderWindowId,
                              nullptr)) {
        return Fail(L"Render window creation failed");
    }
    std::string reason;
    context_ = CreateWindowGlContext(renderWindow_.hwnd, reason);
    if (!context_) {
        return Fail(L"Could not initialize graphics");
    }
    renderWindow_.ShowWith(context_.get());
    if (!logic_.LoadColors()) {
        return Fail(L"Could not load color file or color file contains errors. Redo installation.");
    }
    logic_.FinishCreation(CreateGlPictureMaker("surface.shader", "point.shader", console_.get()));
    return true;
}

bool Win32MainWindow::Fail(const wchar_t* message) {
    MessageBoxW(hwnd, message, L"Zelmo", MB_OK);
    return false;
}

void Win32MainWindow::LayOut() {
    const HWND render = GetDlgItem(hwnd, renderWindowId);
    const HWND console = GetDlgItem(hwnd, consoleId);
    if (render == nullptr || console == nullptr) {
        return;
    }
    SendMessageW(statusBar_, WM_SIZE, 0, 0);
    RECT status = {};
    GetWindowRect(statusBar_, &status);
    RECT client = {};
    GetClientRect(hwnd, &client);
    const int width = client.right - client.left;
    const int height = client.bottom - client.top;
    const int renderHeight = static_cast<int>(static_cast<float>(height) * 0.6f);
    MoveWindow(render, 0, 0, width, renderHeight, TRUE);
    MoveWindow(console, 0, renderHeight, width,
               height - (status.bottom - status.top) - renderHeight, TRUE);
}

void Win32MainWindow::StartThread(std::function<void()> body) {
    console_->Flush();
    std::thread(std::move(body)).detach();
}

void Win32MainWindow::SendStepDone(const ProcessStep& step) {
    SendMessageW(hwnd, stepDoneMessage, reinterpret_cast<WPARAM>(&step), 0);
}

void Win32MainWindow::RepaintPicture() {
    RedrawWindow(renderWindow_.hwnd, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
}

void Win32MainWindow::RepaintWindow() {
    InvalidateRect(hwnd, nullptr, TRUE);
    UpdateWindow(hwnd);
}

void Win32MainWindow::SetCaption(const std::wstring& text) {
    SetWindowTextW(hwnd, text.c_str());
}

void Win32MainWindow::SetNarrowCaption(const std::string& text) {
    SetWindowTextA(hwnd, text.c_str());
}

void Win32MainWindow::EnableMenuEntry(MenuEntry entry, bool enabled) {
    EnableMenuItem(GetMenu(hwnd), static_cast<UINT>(entry),
                   static_cast<UINT>(MF_BYCOMMAND | (enabled ? MF_ENABLED : MF_GRAYED)));
}

void Win32MainWindow::SetStatusText(StatusField field, const std::wstring& text) {
    SendMessageW(statusBar_, SB_SETTEXTW, static_cast<WPARAM>(field),
                 reinterpret_cast<LPARAM>(text.c_str()));
}

std::optional<std::filesystem::path> Win32MainWindow::AskForFile(const FileQuestion& question) {
    console_->Flush();
    wchar_t buffer[260] = {};
    const std::wstring filter = FilterText(question);
    OPENFILENAMEW dialog = {};
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = hwnd;
    dialog.lpstrFilter = filter.c_str();
    dialog.lpstrFile = buffer;
    dialog.nMaxFile = static_cast<DWORD>(std::size(buffer));
    dialog.lpstrTitle = question.title.c_str();
    dialog.Flags = OFN_EXPLORER | OFN_FILEMUSTEXIST | OFN_PATHMUSTEXIST | OFN_HIDEREADONLY;
    dialog.lpstrDefExt = question.defaultExtension.c_str();
    if (!GetOpenFileNameW(&dialog)) {
        return std::nullopt;
    }
    return std::filesystem::path(buffer);
}

void Win32MainWindow::ShowMessage(const std::wstring& text, const std::wstring& caption) {
    console_->Flush();
    MessageBoxW(hwnd, text.c_str(), caption.c_str(), MB_OK);
}

}  // namespace zelmo
