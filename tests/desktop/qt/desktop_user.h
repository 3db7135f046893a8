#pragma once

#include <QAction>
#include <QImage>
#include <QPlainTextEdit>
#include <QStringList>
#include <QWidget>
#include <filesystem>
#include <functional>
#include <string>

#include "tests/desktop/qt/holdable_window.h"
#include "tests/support/temp_folder.h"

namespace zelmo {

/// A user in front of the program's window, with a small layout and a process file at hand.
class DesktopUser {
public:
    /// Opens the window. Throws std::runtime_error if the program does not start.
    DesktopUser();

    HoldableWindow& Window() { return window_; }
    const TempFolder& Folder() const { return folder_; }
    const std::filesystem::path& Layout() const { return layout_; }
    const std::filesystem::path& Process() const { return process_; }

    QAction* Entry(const QString& text);
    /// Five letters, one for each menu entry in the bar's order: its first one if it is enabled,
    /// else a dash. "-RS-A" does not occur, "S--LA" does.
    std::string MenuStates();
    void Click(const QString& text);
    void PressKey(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void ClickCloseButton();

    /// The commands with their dialogs.
    void LoadLayout();
    void LoadLayout(const std::filesystem::path& path);
    void StartRun();
    void StartRun(const std::filesystem::path& process);
    /// Starts a run whose step `step`, counted from 1, is held at its end; returns when it is.
    void StartRunAndHold(int step);
    void WaitForRunEnd();
    void Run();
    /// Saves the pictures and returns the folder, which is the newest one beside the process file.
    std::filesystem::path SaveImages();

    QWidget& Picture();
    QPlainTextEdit& Console();
    QStringList ConsoleLines();
    /// The texts of the status bar, from the left.
    QStringList StatusTexts();
    /// What the picture area shows.
    QImage Shown();
    /// What stands on the screen where the picture area is.
    QImage OnScreen();

private:
    TempFolder folder_;
    std::filesystem::path layout_;
    std::filesystem::path process_;
    HoldableWindow window_;
};

/// Processes events until `done` or until a minute is over, which fails the test.
void WaitUntil(const std::function<bool()>& done);

QString ToQString(const std::filesystem::path& path);

/// The process file of the small layout: five steps, the substrate among them.
extern const char* const smallProcess;

}  // namespace zelmo
