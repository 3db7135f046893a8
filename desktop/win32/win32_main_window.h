#pragma once

#include <memory>

#include "desktop/main_window_logic.h"
#include "desktop/platform.h"
#include "desktop/win32/base_window.h"
#include "desktop/win32/edit_console.h"
#include "desktop/win32/render_window.h"
#include "render/gl/window_context_wgl.h"

namespace zelmo {

/// The top-level window: the picture above, the console below, the status bar at the foot and a
/// menu bar without drop-downs. It is the platform that the main window's logic runs on.
class Win32MainWindow final : public BaseWindow<Win32MainWindow>, public Platform {
public:
    Win32MainWindow();
    ~Win32MainWindow() override;

    const wchar_t* ClassName() const override { return L"Main Window Class"; }
    LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

    void MakeContextCurrent() override { context_->MakeCurrent(); }
    void GiveUpContext() override { context_->Release(); }
    bool HasContext() const override { return context_ && context_->IsCurrent(); }
    void StartThread(std::function<void()> body) override;
    void SendStepDone(const ProcessStep& step) override;
    std::uint64_t ThreadNumber() const override { return GetCurrentThreadId(); }
    void RepaintPicture() override;
    void RepaintWindow() override;
    void SetCaption(const std::wstring& text) override;
    void SetNarrowCaption(const std::string& text) override;
    void EnableMenuEntry(MenuEntry entry, bool enabled) override;
    void RedrawMenu() override { DrawMenuBar(hwnd); }
    void SetStatusText(StatusField field, const std::wstring& text) override;
    LogConsole* Console() override { return console_.get(); }
    void ClearConsole() override { console_->Clear(); }
    std::optional<std::filesystem::path> AskForFile(const FileQuestion& question) override;
    void ShowMessage(const std::wstring& text, const std::wstring& caption) override;
    void Quit() override { PostQuitMessage(0); }

private:
    /// Builds everything inside the window, in order. False after a message box if a part fails.
    bool CreateContents();
    void CentreOnScreen();
    bool CreateConsole();
    bool CreateStatusBar();
    void CreateMenuBar();
    bool CreateDrawing();
    bool Fail(const wchar_t* message);
    void LayOut();
    void HandleCommand(int id);
    void HandleKey(WPARAM key);
    void ForwardWheel(WPARAM wParam, LPARAM lParam);
    LRESULT Dispatch(UINT message, WPARAM wParam, LPARAM lParam);

    struct FontDeleter {
        using pointer = HFONT;
        void operator()(HFONT font) const { DeleteObject(font); }
    };
    struct BrushDeleter {
        using pointer = HBRUSH;
        void operator()(HBRUSH brush) const { DeleteObject(brush); }
    };
    using Font = std::unique_ptr<HFONT, FontDeleter>;

    HWND statusBar_ = nullptr;
    HWND consoleEdit_ = nullptr;
    std::unique_ptr<HBRUSH, BrushDeleter> consoleBrush_;
    HCURSOR arrowCursor_ = nullptr;
    bool forwardingWheel_ = false;
    Font consoleFont_;
    Font statusFont_;
    std::unique_ptr<EditConsole> console_;
    std::unique_ptr<WindowGlContext> context_;  ///< outlives the pictures that are drawn with it
    MainWindowLogic logic_;
    RenderWindow renderWindow_;
};

}  // namespace zelmo
