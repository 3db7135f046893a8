#pragma once

#include <QMainWindow>
#include <QString>
#include <map>
#include <memory>
#include <string>

#include "desktop/main_window_logic.h"
#include "desktop/platform.h"
#include "desktop/qt/text_view_console.h"
#include "render/gl/gl_context.h"

class QAction;

namespace zelmo {

class PictureView;
class StatusFieldLabel;

/// The program's window on Linux: the picture above, the console below, the status bar at the foot
/// and a menu bar without drop-downs. It is the platform that the main window's logic runs on.
class QtMainWindow : public QMainWindow, public Platform {
public:
    QtMainWindow();
    ~QtMainWindow() override;

    /// Makes the GL context, loads the data files and sets the menu. False after a message box if
    /// a part fails.
    bool Prepare();

    void MakeContextCurrent() override { context_->MakeCurrent(); }
    void GiveUpContext() override { context_->Release(); }
    bool HasContext() const override { return context_ && context_->IsCurrent(); }
    void StartThread(std::function<void()> body) override;
    void SendStepDone(const ProcessStep& step) override;
    std::uint64_t ThreadNumber() const override;
    void RepaintPicture() override;
    void RepaintWindow() override;
    void SetCaption(const std::wstring& text) override;
    void SetNarrowCaption(const std::string& text) override;
    void EnableMenuEntry(MenuEntry entry, bool enabled) override;
    void RedrawMenu() override;
    void SetStatusText(StatusField field, const std::wstring& text) override;
    LogConsole* Console() override { return console_.get(); }
    void ClearConsole() override { console_->Clear(); }
    std::optional<std::filesystem::path> AskForFile(const FileQuestion& question) override;
    void ShowMessage(const std::wstring& text, const std::wstring& caption) override;
    void Quit() override;

protected:
    // An exception ends the program: none may pass through the toolkit.
    void closeEvent(QCloseEvent* event) noexcept override;
    void keyPressEvent(QKeyEvent* event) noexcept override;
    void wheelEvent(QWheelEvent* event) noexcept override;
    bool eventFilter(QObject* watched, QEvent* event) noexcept override;

private:
    void CreateViews();
    void CreateStatusBar();
    void CreateMenuBar();
    bool Fail(const std::wstring& message);
    /// Gives the window its outer size, that of the screen at most, in the middle of the screen.
    void Place();
    void LayOut();

    std::unique_ptr<GlContext> context_;  ///< outlives the pictures that are drawn with it
    MainWindowLogic logic_;
    std::map<MenuEntry, QAction*> menu_;
    std::map<StatusField, StatusFieldLabel*> status_;
    PictureView* pictureView_ = nullptr;
    QPlainTextEdit* consoleView_ = nullptr;
    std::unique_ptr<TextViewConsole> console_;
    bool framed_ = false;   ///< whether the window was placed with its frame
    QString dialogFolder_;  ///< where a file dialog begins: where the last one ended
};

}  // namespace zelmo
